#include <csignal>
#include <filesystem>
#include <sys/stat.h>
#include <sys/wait.h>

#include "QuarnCore/move/PathMover.h"
#include "tests/move/Moving.h"
#include "tests/support/Child.h"
#include "tests/support/DeepTree.h"
#include "tests/support/GatedPlatform.h"
#include "tests/support/NothingLost.h"

namespace quarn {
namespace {

using namespace moving;
namespace fs = std::filesystem;
using Lines = std::vector<std::string>;
using Places = std::vector<std::string>;

const std::string source = "/Users/me/Movies";
const std::string destination = "/Volumes/X9/deep/Movies";
const PlatformError broken("test", 1, "It broke.");
const int mostOperations = 40;

void setUp() {
  fs::remove_all(source);
  fs::remove_all("/Volumes/X9/deep");
  scene::writeBytes(source + "/a.mov", 9000);
  scene::write(source + "/Sub/.hidden", "also mine");
  scene::link(source + "/Sub/link", "../a.mov");
}

std::string movePath(const Platform& given = hostPlatform(), const std::string& to = destination) {
  Platform platform = given;
  return thrown([&] {
    const auto plan = PathMover::plan(platform, Path(source), Path(to));
    PathMover::replaceByLink(platform, plan, PathMover::copy(platform, plan, false));
  });
}

void makeDiskUsage(const std::string& output) {
  scene::replaceTool("/usr/bin/du", "#!/bin/sh\nprintf -- '" + output + "'\n");
}

TEST(PathMover, copiesWritesOutComparesAndRemovesInThisOrder) {
  setUp();
  Lines steps;
  GatedPlatform gated([&steps](const std::string& operation) {
    steps.push_back(operation);
    return Result<void>();
  });
  EXPECT_EQ(movePath(gated.platform()), "nothing");
  EXPECT_EQ(steps, (Lines{"start /usr/bin/du -sk " + source, "createFolder /Volumes/X9/deep",
                          "createFolder " + destination,
                          "start /usr/bin/rsync -aH " + source + "/ " + destination + "/",
                          "flush " + destination, "start /usr/bin/du -sk " + destination,
                          "start /usr/bin/find " + source, "start /usr/bin/find " + destination,
                          "remove " + source, "createSymbolicLink " + source + " -> " + destination}));
}

TEST(PathMover, aFailureOfAnyOneOperationLosesNothing) {
  Lines failed;
  for (int n = 1; n <= mostOperations; ++n) {
    setUp();
    const NothingLost oracle(source);
    int count = 0;
    std::string operation;
    GatedPlatform gated([&](const std::string& name) {
      if (++count != n) return Result<void>();
      operation = name;
      return Result<void>(broken);
    });
    const std::string told = movePath(gated.platform());
    if (operation.empty()) {
      EXPECT_EQ(told, "nothing");
      break;
    }
    SCOPED_TRACE(operation);
    failed.push_back(operation.substr(0, operation.find(' ')));
    EXPECT_EQ(oracle.foreignChanges({source, "/Volumes/X9/deep"}), "");
    if (failed.back() == "createSymbolicLink") {
      EXPECT_EQ(told, "It broke.");
      EXPECT_EQ(oracle.wholeAt(), (Places{destination}));
    } else if (operation.starts_with("start /usr/bin/find")) {
      EXPECT_EQ(told, "nothing") << "the walk decides then";
      EXPECT_EQ(oracle.wholeAt(), (Places{destination}));
    } else {
      EXPECT_EQ(told, "It broke.");
      EXPECT_EQ(oracle.wholeAt().front(), source);
      EXPECT_EQ(movePath(), "nothing") << "the next attempt goes on from there";
      EXPECT_EQ(oracle.wholeAt(), (Places{destination}));
    }
  }
  EXPECT_EQ(failed.size(), 10u);
}

TEST(PathMover, aFailureFromAnyOperationOnLosesNothing) {
  for (int n = 1; n <= mostOperations; ++n) {
    setUp();
    const NothingLost oracle(source);
    int count = 0;
    GatedPlatform gated([&](const std::string&) { return ++count < n ? Result<void>() : broken; });
    movePath(gated.platform());
    EXPECT_FALSE(oracle.wholeAt().empty()) << n;
    EXPECT_EQ(oracle.foreignChanges({source, "/Volumes/X9/deep"}), "") << n;
    if (count < n) return;
  }
  FAIL() << "never ran through";
}

TEST(PathMover, killedAtAnyOperationLosesNothing) {
  int n = 1;
  for (; n <= mostOperations; ++n) {
    setUp();
    const NothingLost oracle(source);
    const pid_t process = ::fork();
    if (process == 0) {
      int count = 0;
      GatedPlatform gated([&](const std::string&) {
        if (++count == n) ::kill(::getpid(), SIGKILL);
        return Result<void>();
      });
      movePath(gated.platform());
      ::_exit(0);
    }
    int status = 0;
    ::waitpid(process, &status, 0);
    if (!WIFSIGNALED(status)) break;
    EXPECT_FALSE(oracle.wholeAt().empty()) << n;
    if (scene::exists(source)) {
      EXPECT_EQ(movePath(), "nothing") << n;
    } else {
      scene::link(source, destination);
    }
    EXPECT_EQ(oracle.wholeAt(), (Places{destination})) << n;
  }
  EXPECT_EQ(n, 11);
}

TEST(PathMover, whatComesIntoTheSourceWhileTheCopyIsWrittenOutIsNotLost) {
  const std::vector<std::pair<std::function<void()>, std::string>> rows = {
      {[] { scene::write(source + "/late", "x"); }, "Movies copied with 5 of 6 entries — 1 missing."},
      {[] { scene::writeBytes(source + "/a.mov", 9001); }, "a.mov copied with a different file size."},
  };
  for (const auto& [change, reason] : rows) {
    setUp();
    GatedPlatform gated([&change = change](const std::string& operation) {
      if (operation.starts_with("flush")) change();
      return Result<void>();
    });
    makeDiskUsage("100\\tx\\n");
    EXPECT_EQ(movePath(gated.platform()), "Verification failed: " + reason);
    EXPECT_FALSE(scene::isLink(source));
    EXPECT_TRUE(scene::exists(source + "/a.mov"));
  }
}

TEST(PathMover, aFolderThatMayNotBeEmptiedIsFoundBeforeAnythingIsRemoved) {
  setUp();
  ::chmod((source + "/Sub").c_str(), 0555);
  const auto before = scene::tree(source);
  EXPECT_EQ(child::failuresWithoutRights([] {
              EXPECT_EQ(movePath(),
                        "“Movies” couldn’t be removed because you don’t have permission to access it.");
            }),
            "");
  EXPECT_EQ(scene::tree(source), before);
}

TEST(PathMover, aPlaceBelowADriveThatIsNotMountedIsRefused) {
  setUp();
  EXPECT_EQ(movePath(hostPlatform(), "/Volumes/None/Movies"),
            "No drive is mounted there: /Volumes/None/Movies");
  EXPECT_EQ(movePath(hostPlatform(), "/Volumes/None"), "No drive is mounted there: /Volumes/None");
  EXPECT_FALSE(scene::exists("/Volumes/None"));
}

TEST(PathMover, aWholeVolumeIsNoPlace) {
  setUp();
  scene::link("/Users/me/Drive", "/Volumes/X9");
  for (const std::string& place : Lines{"/Volumes/X9", "/Users/me/Drive", "/Volumes/X9/."}) {
    EXPECT_EQ(movePath(hostPlatform(), place),
              "Destination is a whole volume: " + Path(place).text() + ". Name a folder on it.");
  }
  EXPECT_FALSE(scene::isLink(source));
}

TEST(PathMover, aPlaceRightBelowALinkToTheDriveIsOnTheDrive) {
  setUp();
  scene::link("/Users/me/External", "/Volumes/X9");
  EXPECT_EQ(movePath(hostPlatform(), "/Users/me/External/Movies"), "nothing");
  EXPECT_TRUE(scene::exists("/Volumes/X9/Movies/a.mov"));
}

TEST(PathMover, aFolderThatBelongsWhereItIsIsNoPlace) {
  setUp();
  for (const std::string& place :
       Lines{"/Applications", "/Users/me/Library/Application Support/Quarn", "/Volumes"}) {
    EXPECT_EQ(movePath(hostPlatform(), place), "Destination is a folder that belongs where it is: " + place);
  }
  EXPECT_FALSE(scene::isLink(source));
}

TEST(PathMover, theMinimumIsRightForAnyNumber) {
  setUp();
  Platform& host = hostPlatform();
  const auto minimum = [&](const std::string& kilobytes) {
    makeDiskUsage(kilobytes + "\\tx\\n");
    return PathMover::plan(host, Path(source), Path(destination)).minimumKB;
  };
  EXPECT_EQ(minimum("0"), 0);
  EXPECT_EQ(minimum("1"), 0);
  EXPECT_EQ(minimum("19"), 18);
  EXPECT_EQ(minimum("100"), 95);
  EXPECT_EQ(minimum("199"), 189);
  EXPECT_EQ(minimum("9223372036854775807"), 8762203435012037016);
}

TEST(PathMover, anAbsurdDiskUsageNeverCostsTheSource) {
  setUp();
  const auto before = scene::tree(source);
  for (const std::string& absurd : Lines{"-5\\tx\\n", "9223372036854775808\\tx\\n", "\\n", "ten\\n"}) {
    makeDiskUsage(absurd);
    EXPECT_TRUE(movePath().starts_with("Could not parse du output for " + source)) << absurd;
  }
  scene::replaceTool("/usr/bin/du",
                     "#!/bin/sh\ncase \"$2\" in /Users/*) echo 9223372036854775807;; *) echo 4;; esac\n");
  EXPECT_EQ(movePath(), "Verification failed: destination is below 95%; source left untouched.");
  EXPECT_EQ(scene::tree(source), before);
}

TEST(PathMover, aDestinationTooDeepInTheSourceToTellIsRefused) {
  setUp();
  const std::string far = makeFarFolder(source + "/tree", "/Users/me/half");
  EXPECT_EQ(movePath(hostPlatform(), far + "/new"),
            "“new” can’t be looked at: The file “" + std::string(200, 'd') + "” couldn’t be opened.");
  EXPECT_FALSE(scene::exists(far + "/new"));
  EXPECT_FALSE(scene::isLink(source));
}

}  // namespace
}  // namespace quarn
