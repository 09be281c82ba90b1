#include <csignal>
#include <filesystem>
#include <sys/wait.h>

#include "tests/move/Moving.h"
#include "tests/support/GatedPlatform.h"
#include "tests/support/NothingLost.h"

namespace quarn {
namespace {

using namespace moving;
namespace fs = std::filesystem;
using Places = std::vector<std::string>;

const PlatformError broken("test", 1, "It broke.");
const std::string supportOfQuarn = scene::home + "/Library/Application Support/Quarn";
const int mostOperations = 40;

/// One item, its place on the drive, and company that nobody may touch.
struct Item {
  std::string source;
  std::string folder;
  std::string name;
  std::string destination() const { return folder + "/" + name; }
  std::string move(const Platform& platform = hostPlatform()) const {
    return moving::move(platform, source, folder);
  }
  std::string restore(const Platform& platform = hostPlatform()) const {
    return moving::restore(platform, source);
  }
};

void PrintTo(const Item& item, std::ostream* stream) {
  *stream << item.source;
}

const Item bundle{app, appsFolder, "Foo.app"};
const Item folder{support, supportFolder, "Foo"};

/// A part of the tree that a test makes anew before each attempt.
void clearAway(const Item& item) {
  for (const std::string& path : {item.source, item.destination(), item.folder + "/.QuarnTrash", driveTrash(),
                                  scene::home + "/.Trash", supportOfQuarn}) {
    fs::remove_all(path);
  }
}

void setUp(const Item& item) {
  clearAway(item);
  scene::makeApp(item.source, {}, 9000);
  scene::link(item.source + "/Contents/Current", "MacOS");
  scene::write(item.source + "/.hidden", "also mine");
  scene::makeApp("/Applications/Other.app", {}, 100);
  scene::makeApp(appsFolder + "/Other.app", {}, 100);
  scene::write(driveTrash() + "/" + item.name + "/mine", "a foreign item of the same name");
  scene::write(item.folder + "/.QuarnTrash/" + item.name + "/mine", "another");
  scene::write(scene::drive + "/letter", "a letter");
  scene::write(scene::manifest, "[\n\n]");
}

/// Where a move may leave something new. The manifest may change.
std::string foreignChanges(const NothingLost& oracle, const Item& item) {
  std::string changes =
      oracle.foreignChanges({item.source, item.destination(), driveTrash(), item.folder + "/.QuarnTrash"});
  const std::string manifest = "changed: " + scene::manifest + "\n";
  if (const auto at = changes.find(manifest); at != std::string::npos) changes.erase(at, manifest.size());
  return changes;
}

const std::string inTrash = "in the Trash";

/// Where the item stands whole; which name a Trash gives is its own affair.
Places wholeAt(const NothingLost& oracle) {
  Places places = oracle.wholeAt();
  for (std::string& place : places) {
    if (place.starts_with(driveTrash() + "/")) place = inTrash;
  }
  return places;
}

/// What must be after one operation of a move has failed.
struct Expected {
  std::string told;
  Places whole;
  std::string nextAttempt;
};

Expected afterFailureOf(const std::string& operation, const Item& item) {
  const std::string source = item.source;
  const std::string destination = item.destination();
  const auto is = [&operation](const std::string& word) { return operation.starts_with(word); };
  if (is("createFolder " + item.folder)) return {"It broke.", {source}, "nothing"};
  if (is("claim") || is("start /usr/bin/ditto")) return {"Copy failed: It broke.", {source}, "nothing"};
  // The copy goes to the Trash with every byte, but its top folder has the mode of the claim yet.
  if (is("copyAttributes")) return {"Copy failed: It broke.", {source}, "nothing"};
  if (is("flush")) return {"Verification failed: It broke.", {source, inTrash}, "nothing"};
  if (is("remove")) return {"Could not remove original after copy: It broke.", {source, inTrash}, "nothing"};
  if (is("createSymbolicLink")) return {"Symlink creation failed: It broke.", {source}, "nothing"};
  // Neither the list of processes nor a count nor a record can fail a move.
  return {"nothing", {destination}, "Destination already exists."};
}

class Fault : public ::testing::TestWithParam<Item> {};

INSTANTIATE_TEST_SUITE_P(Moves, Fault, ::testing::Values(bundle, folder), [](const auto& test) {
  return test.param.name == "Foo.app" ? "ofABundle" : "ofAFolder";
});

TEST_P(Fault, inAnyOneOperationOfAMoveLosesNothing) {
  const Item& item = GetParam();
  std::vector<std::string> failed;
  for (int n = 1; n <= mostOperations; ++n) {
    setUp(item);
    const NothingLost oracle(item.source);
    int count = 0;
    std::string operation;
    GatedPlatform gated([&](const std::string& name) {
      if (++count != n) return Result<void>();
      operation = name;
      return Result<void>(broken);
    });
    const std::string told = item.move(gated.platform());
    if (operation.empty()) {
      EXPECT_EQ(told, "nothing");
      EXPECT_EQ(wholeAt(oracle), (Places{item.destination()}));
      break;
    }
    SCOPED_TRACE(operation);
    failed.push_back(operation.substr(0, operation.find(' ')));
    const Expected expected = afterFailureOf(operation, item);
    EXPECT_EQ(told, expected.told);
    EXPECT_EQ(wholeAt(oracle), expected.whole);
    EXPECT_EQ(foreignChanges(oracle, item), "");
    EXPECT_EQ(item.move(), expected.nextAttempt);
    EXPECT_EQ(foreignChanges(oracle, item), "");
    EXPECT_FALSE(wholeAt(oracle).empty());
  }
  EXPECT_GE(failed.size(), 8u);
  EXPECT_LT(failed.size(), static_cast<std::size_t>(mostOperations)) << "never ran through";
  EXPECT_EQ(std::count(failed.begin(), failed.end(), "remove"), 1);
  EXPECT_EQ(std::count(failed.begin(), failed.end(), "createSymbolicLink"), 1);
}

TEST_P(Fault, inEveryOperationFromAnyOneOnLosesNothing) {
  const Item& item = GetParam();
  int n = 1;
  for (; n <= mostOperations; ++n) {
    setUp(item);
    const NothingLost oracle(item.source);
    int count = 0;
    std::string first;
    GatedPlatform gated([&](const std::string& name) {
      if (++count < n) return Result<void>();
      if (first.empty()) first = name;
      return Result<void>(broken);
    });
    const std::string told = item.move(gated.platform());
    if (first.empty()) break;
    SCOPED_TRACE(first);
    const Places whole = wholeAt(oracle);
    ASSERT_FALSE(whole.empty());
    EXPECT_EQ(foreignChanges(oracle, item), "");
    const bool copied = scene::exists(item.destination());
    const bool sourceStands = scene::exists(item.source) && !scene::isLink(item.source);
    if (first.starts_with("createSymbolicLink")) {
      EXPECT_EQ(told, "Symlink creation failed: It broke.");
      EXPECT_EQ(whole, (Places{item.destination()}));
      EXPECT_EQ(item.move(), "Source path no longer exists.");
    } else if (scene::isLink(item.source)) {
      EXPECT_EQ(told, "nothing") << "only a record failed";
      EXPECT_EQ(whole, (Places{item.destination()}));
    } else {
      EXPECT_TRUE(sourceStands);
      EXPECT_NE(told, "nothing");
      EXPECT_EQ(whole.front(), item.source);
      EXPECT_EQ(item.move(), copied ? "Destination already exists." : "nothing");
    }
    EXPECT_FALSE(wholeAt(oracle).empty());
  }
  EXPECT_GE(n, 8);
}

TEST_P(Fault, inAnyTwoOperationsOfAMoveLosesNothing) {
  const Item& item = GetParam();
  int pairs = 0;
  for (int n = 1; n <= mostOperations; ++n) {
    bool firstCame = false;
    for (int m = n + 1; m <= mostOperations; ++m) {
      setUp(item);
      const NothingLost oracle(item.source);
      int count = 0;
      std::string operations;
      GatedPlatform gated([&](const std::string& name) {
        ++count;
        if (count != n && count != m) return Result<void>();
        operations += name + "; ";
        return Result<void>(broken);
      });
      item.move(gated.platform());
      firstCame = count >= n;
      if (count < m) break;
      SCOPED_TRACE(operations);
      ++pairs;
      EXPECT_FALSE(wholeAt(oracle).empty());
      EXPECT_EQ(foreignChanges(oracle, item), "");
    }
    if (!firstCame) break;
  }
  EXPECT_GE(pairs, 10);
}

/// Runs a body in a process of its own that is killed at its n-th changing operation; which one that
/// was, or nothing if the body came to its end.
std::string killedAt(int n, const std::function<void(Platform&)>& body,
                     const std::function<void(const std::string&)>& halfway = {}) {
  fs::remove("/tmp/operation");
  const pid_t process = ::fork();
  if (process == 0) {
    int count = 0;
    GatedPlatform gated([&](const std::string& name) {
      if (++count != n) return Result<void>();
      scene::write("/tmp/operation", name);
      if (halfway) halfway(name);
      ::kill(::getpid(), SIGKILL);
      return Result<void>();
    });
    body(gated.platform());
    ::_exit(0);
  }
  int status = 0;
  ::waitpid(process, &status, 0);
  EXPECT_EQ(WIFSIGNALED(status), scene::exists("/tmp/operation"));
  return scene::read("/tmp/operation");
}

TEST_P(Fault, thatKillsTheProgramAtAnyOperationLosesNothing) {
  const Item& item = GetParam();
  std::vector<std::string> killed;
  for (int n = 1; n <= mostOperations; ++n) {
    setUp(item);
    const NothingLost oracle(item.source);
    const std::string operation = killedAt(n, [&item](Platform& platform) { item.move(platform); });
    if (operation.empty()) break;
    SCOPED_TRACE(operation);
    killed.push_back(operation.substr(0, operation.find(' ')));
    const bool isClaimed =
        operation.starts_with("start /usr/bin/ditto") || operation.starts_with("copyAttributes");
    const bool isCopied = operation.starts_with("start /usr/bin/find") || operation.starts_with("flush") ||
                          operation.starts_with("remove");
    EXPECT_EQ(foreignChanges(oracle, item), "");
    EXPECT_EQ(scene::read(scene::manifest), "[\n\n]");
    if (operation.starts_with("createSymbolicLink")) {
      EXPECT_EQ(wholeAt(oracle), (Places{item.destination()}));
      EXPECT_FALSE(scene::exists(item.source));
      EXPECT_EQ(item.move(), "Source path no longer exists.");
    } else if (scene::isLink(item.source)) {
      EXPECT_EQ(wholeAt(oracle), (Places{item.destination()}));
      EXPECT_EQ(scene::target(item.source), item.destination());
      EXPECT_EQ(item.move(), "Destination already exists.");
    } else {
      EXPECT_EQ(wholeAt(oracle),
                isCopied ? (Places{item.source, item.destination()}) : (Places{item.source}));
      EXPECT_EQ(item.move(), isClaimed || isCopied ? "Destination already exists." : "nothing");
    }
    EXPECT_FALSE(wholeAt(oracle).empty());
  }
  EXPECT_EQ(std::count(killed.begin(), killed.end(), "remove"), 1);
  EXPECT_EQ(std::count(killed.begin(), killed.end(), "createSymbolicLink"), 1);
  EXPECT_EQ(std::count(killed.begin(), killed.end(), "writeAtomically"), 1);
}

TEST_P(Fault, thatKillsTheProgramHalfwayThroughTheRemovalLeavesTheWholeCopy) {
  const Item& item = GetParam();
  bool seen = false;
  for (int n = 1; n <= mostOperations && !seen; ++n) {
    setUp(item);
    const NothingLost oracle(item.source);
    const std::string operation = killedAt(
        n, [&item](Platform& platform) { item.move(platform); },
        [&item](const std::string& name) {
          if (name.starts_with("remove")) fs::remove_all(item.source + "/Contents/MacOS");
        });
    ASSERT_NE(operation, "");
    seen = operation.starts_with("remove");
    if (!seen) continue;
    EXPECT_EQ(wholeAt(oracle), (Places{item.destination()}));
    EXPECT_TRUE(scene::exists(item.source + "/Contents/Info.plist"));
    EXPECT_EQ(item.move(), "Destination already exists.");
    EXPECT_EQ(wholeAt(oracle), (Places{item.destination()}));
  }
  EXPECT_TRUE(seen);
}

TEST_P(Fault, thatKillsTheProgramHalfwayThroughTheCopyLeavesTheWholeSource) {
  const Item& item = GetParam();
  setUp(item);
  const NothingLost oracle(item.source);
  scene::replaceTool("/usr/bin/ditto",
                     "#!/bin/sh\nmkdir -p \"$3\"; cp \"$2/.hidden\" \"$3\"; kill -9 $PPID; sleep 1\n");
  const pid_t process = ::fork();
  if (process == 0) {
    item.move();
    ::_exit(0);
  }
  int status = 0;
  ::waitpid(process, &status, 0);
  ASSERT_TRUE(WIFSIGNALED(status));
  EXPECT_EQ(wholeAt(oracle), (Places{item.source}));
  EXPECT_EQ(scene::read(item.destination() + "/.hidden"), "also mine");
  EXPECT_EQ(foreignChanges(oracle, item), "");
  EXPECT_EQ(item.move(), "Destination already exists.");
  EXPECT_EQ(wholeAt(oracle), (Places{item.source}));
}

// The way back.

/// The item on the drive, with its link and its record.
void setUpMoved(const Item& item) {
  setUp(item);
  ASSERT_EQ(item.move(), "nothing");
}

const std::string recorded = "sourcePath";

/// The changing steps of a way home, in their order. On a drive that is no volume of its own a rename is all.
std::vector<std::string> stepsHome() {
  if (!scene::hasMounts()) return {"removeSymbolicLink", "rename", "createFolder", "writeAtomically"};
  return {"removeSymbolicLink", "rename",         "copy", "flush", "start", "start", "remove",
          "createFolder",       "writeAtomically"};
}

TEST_P(Fault, inAnyOneOperationOfARestoreLosesNothing) {
  const Item& item = GetParam();
  std::vector<std::string> failed;
  for (int n = 1; n <= mostOperations; ++n) {
    setUpMoved(item);
    const NothingLost oracle(item.destination());
    int count = 0;
    std::string operation;
    GatedPlatform gated([&](const std::string& name) {
      if (++count != n) return Result<void>();
      operation = name;
      return Result<void>(broken);
    });
    const std::string told = item.restore(gated.platform());
    if (operation.empty()) {
      EXPECT_EQ(told, "nothing");
      EXPECT_EQ(wholeAt(oracle), (Places{item.source}));
      EXPECT_EQ(scene::read(scene::manifest), "[\n\n]");
      break;
    }
    SCOPED_TRACE(operation);
    failed.push_back(operation.substr(0, operation.find(' ')));
    if (failed.back() == "removeSymbolicLink") {
      EXPECT_EQ(told, "It broke.");
      EXPECT_EQ(wholeAt(oracle), (Places{item.destination()}));
      EXPECT_EQ(oracle.foreignChanges({}), "");
      EXPECT_EQ(item.restore(), "nothing");
      EXPECT_EQ(wholeAt(oracle), (Places{item.source}));
    } else if (failed.back() == "remove") {
      EXPECT_EQ(told, "It broke.");
      EXPECT_EQ(wholeAt(oracle), (Places{item.source, item.destination()}));
    } else if (failed.back() == "rename" || failed.back() == "copy" || failed.back() == "flush") {
      EXPECT_EQ(told, "It broke.");
      EXPECT_EQ(wholeAt(oracle), (Places{item.destination()}));
      EXPECT_EQ(oracle.foreignChanges({}), "gone: " + item.source + "\n") << "the link alone is gone";
      EXPECT_EQ(item.restore(),
                "The file “" + item.name + "” couldn’t be opened because there is no such file.");
      EXPECT_EQ(wholeAt(oracle), (Places{item.destination()}));
    } else {
      EXPECT_EQ(told, "nothing") << "a record can't fail it";
      EXPECT_EQ(wholeAt(oracle), (Places{item.source}));
    }
  }
  EXPECT_EQ(failed, stepsHome());
}

TEST_P(Fault, thatKillsTheProgramAtAnyOperationOfARestoreLosesNothing) {
  const Item& item = GetParam();
  std::vector<std::string> killed;
  for (int n = 1; n <= mostOperations; ++n) {
    setUpMoved(item);
    const NothingLost oracle(item.destination());
    const std::string operation = killedAt(n, [&item](Platform& platform) { item.restore(platform); });
    if (operation.empty()) break;
    SCOPED_TRACE(operation);
    killed.push_back(operation.substr(0, operation.find(' ')));
    const auto is = [&killed](const char* step) { return killed.back() == step; };
    const bool isCopied = is("flush") || is("start") || is("remove");
    const bool isHome = is("createFolder") || is("writeAtomically");
    const Places both = {item.source, item.destination()};
    EXPECT_EQ(wholeAt(oracle), isCopied ? both : Places{isHome ? item.source : item.destination()});
    EXPECT_EQ(scene::isLink(item.source), is("removeSymbolicLink"));
    EXPECT_NE(scene::read(scene::manifest).find(recorded), std::string::npos) << "not forgotten yet";
  }
  EXPECT_EQ(killed, stepsHome());
}

}  // namespace
}  // namespace quarn
