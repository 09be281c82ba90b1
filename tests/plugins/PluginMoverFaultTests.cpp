#include <cerrno>
#include <csignal>
#include <filesystem>
#include <sstream>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Platform/CocoaError.h"
#include "tests/plugins/MovingPlugins.h"
#include "tests/support/NothingLost.h"

namespace quarn {
namespace {

using namespace moving;
namespace fs = std::filesystem;

constexpr int mostOperations = 30;

enum class Act { move, moveOverACopy, restore, removeWithCopy };

class Faults : public MovingPlugins, public testing::WithParamInterface<Act> {
 protected:
  /// The whole bundle at the start.
  static std::string original() { return isOut() ? copy : place; }
  static bool isOut() { return GetParam() == Act::restore || GetParam() == Act::removeWithCopy; }

  void begin() {
    for (const std::string& path : {place, std::string("/Volumes/X9/ExternalQuarn")}) fs::remove_all(path);
    installed::makeBundle(vst3 + "/Other.vst3", "other");
    installed::makeBundle(onDrive + "/VST3/Other.vst3", "other");
    scene::write("/Volumes/X9/letter", "a letter");
    isOut() ? makeExternalised() : makeNative();
    if (GetParam() == Act::moveOverACopy) installed::makeBundle(copy, "older");
  }
  std::string act(Platform& platform) {
    switch (GetParam()) {
      case Act::restore:
        return restore(plugin(), platform);
      case Act::removeWithCopy:
        return remove(true, plugin(), platform);
      default:
        return move(plugin(), platform);
    }
  }
  bool isThere() const { return scene::exists(place); }

  /// What changed beside the plug-in and the place that it goes to, a line each. What stands there goes: a
  /// link, or an older copy.
  static std::string foreignChanges(const NothingLost& oracle) {
    const std::string replaced = isOut() ? place : copy;
    std::istringstream lines(oracle.foreignChanges({replaced}));
    std::string foreign;
    for (std::string line; std::getline(lines, line);) {
      if (line.find(": " + replaced) == std::string::npos) foreign += line + "\n";
    }
    return foreign;
  }

  /// Every original byte stands where it was or where it was to go, and what was said is true.
  void expectNothingLost(const NothingLost& oracle, const std::string& said) {
    EXPECT_EQ(foreignChanges(oracle), "");
    const Lines whole = oracle.wholeAt();
    if (said == "removed: ok") {
      EXPECT_FALSE(isThere());
    } else if (said == movedOut) {
      EXPECT_EQ(scene::target(place), copy);
      EXPECT_EQ(whole, Lines{copy});
    } else if (said == "restored: ok") {
      ASSERT_FALSE(whole.empty());
      EXPECT_EQ(whole.front(), place);
    } else {
      EXPECT_FALSE(whole.empty());
      EXPECT_TRUE(said.empty() || said.starts_with("failed: ")) << said;
    }
  }

  /// After any failure the same again does what is left to do, and loses nothing either.
  void expectNextRunToFinish(const NothingLost& oracle) {
    if (!isThere()) return;
    const std::string said = act(hostPlatform());
    EXPECT_FALSE(said.starts_with("failed")) << said;
    EXPECT_EQ(oracle.wholeAt().empty(), GetParam() == Act::removeWithCopy);
  }
};

void PrintTo(Act act, std::ostream* stream) {
  *stream << static_cast<int>(act);
}

std::string nameOf(const testing::TestParamInfo<Act>& info) {
  const Lines names = {"move", "moveOverACopy", "restore", "remove"};
  return names.at(static_cast<std::size_t>(info.param));
}

INSTANTIATE_TEST_SUITE_P(OfPlugins, Faults,
                         testing::Values(Act::move, Act::moveOverACopy, Act::restore, Act::removeWithCopy),
                         nameOf);

TEST_P(Faults, atAnyOperationOnceOrForGoodLoseNothing) {
  int failures = 0;
  for (const int number : {EIO, ENOSPC, EACCES, EROFS}) {
    for (const bool isForGood : {false, true}) {
      for (int n = 1; n <= mostOperations; ++n) {
        begin();
        const NothingLost oracle(original());
        int count = 0;
        std::string first;
        GatedPlatform gated([&](const std::string& operation) -> Result<void> {
          ++count;
          if (isForGood ? count < n : count != n) return {};
          if (first.empty()) first = operation;
          return CocoaError::fromErrno(CocoaError::Operation::save, number, Path("/x"));
        });
        const std::string said = act(gated.platform());
        if (first.empty()) break;
        SCOPED_TRACE(first + (isForGood ? " for good, " : ", ") + std::to_string(number) + ": " + said);
        ++failures;
        expectNothingLost(oracle, said);
        expectNextRunToFinish(oracle);
      }
    }
  }
  EXPECT_GE(failures, 8 * (GetParam() == Act::removeWithCopy ? 2 : 6));
}

TEST_P(Faults, thatKillTheProgramAtAnyOperationLoseNothing) {
  Lines killed;
  for (int n = 1; n <= mostOperations; ++n) {
    begin();
    const NothingLost oracle(original());
    fs::remove("/tmp/operation");
    const pid_t process = ::fork();
    if (process == 0) {
      int count = 0;
      GatedPlatform gated([&](const std::string& operation) -> Result<void> {
        if (++count != n) return {};
        scene::write("/tmp/operation", operation);
        ::kill(::getpid(), SIGKILL);
        return {};
      });
      act(gated.platform());
      ::_exit(0);
    }
    int status = 0;
    ::waitpid(process, &status, 0);
    const std::string operation = scene::read("/tmp/operation");
    ASSERT_EQ(WIFSIGNALED(status), !operation.empty());
    if (operation.empty()) break;
    SCOPED_TRACE(operation);
    killed.push_back(operation);
    expectNothingLost(oracle, "");
    expectNextRunToFinish(oracle);
  }
  EXPECT_GE(killed.size(), GetParam() == Act::removeWithCopy ? 2u : 6u);
}

/// Lets the n-th look, or all from that one on, fail.
class FailingLooks : public FileSystemDecorator {
 public:
  FailingLooks(FileSystem& inner, int n, bool isForGood)
      : FileSystemDecorator(inner), n_(n), isForGood_(isForGood) {}
  bool hasFailed() const { return count_ >= n_; }

  bool exists(const Path& path) const override { return !fails() && FileSystemDecorator::exists(path); }
  bool isFolder(const Path& path) const override { return !fails() && FileSystemDecorator::isFolder(path); }
  Result<FileAttributes> attributes(const Path& path) const override {
    if (fails()) return error(path);
    return FileSystemDecorator::attributes(path);
  }
  Result<std::string> readSymbolicLink(const Path& path) const override {
    if (fails()) return error(path);
    return FileSystemDecorator::readSymbolicLink(path);
  }
  Result<std::vector<std::string>> list(const Path& folder, Hidden hidden) const override {
    if (fails()) return error(folder);
    return FileSystemDecorator::list(folder, hidden);
  }
  void walk(const Path& root, Hidden hidden, WalkVisitor& visitor) const override {
    if (fails()) {
      visitor.failed(root, error(root));
    } else {
      FileSystemDecorator::walk(root, hidden, visitor);
    }
  }
  Result<std::string> readStart(const Path& file, std::size_t count) const override {
    if (fails()) return error(file);
    return FileSystemDecorator::readStart(file, count);
  }

 private:
  bool fails() const { return ++count_ >= n_ && (isForGood_ || count_ == n_); }
  static PlatformError error(const Path& path) {
    return CocoaError::fromErrno(CocoaError::Operation::readFile, EIO, path);
  }

  const int n_;
  const bool isForGood_;
  mutable int count_ = 0;
};

TEST_P(Faults, atAnyLookLoseNothing) {
  int failures = 0;
  for (const bool isForGood : {false, true}) {
    for (int n = 1; n <= 1000; ++n) {
      begin();
      const NothingLost oracle(original());
      FailingLooks files(hostPlatform().files, n, isForGood);
      Platform platform = replacing({.files = &files});
      const std::string said = act(platform);
      if (!files.hasFailed()) break;
      SCOPED_TRACE("look " + std::to_string(n) + (isForGood ? " and all after it: " : ": ") + said);
      ++failures;
      expectNothingLost(oracle, said);
      expectNextRunToFinish(oracle);
    }
  }
  EXPECT_GE(failures, 40);
}

/// Nothing is removed on the word of a drive that isn't there any more.
TEST_P(Faults, ofADriveThatIsPulledBetweenTwoStepsLoseNothing) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  scene::makeFolder("/tmp/drive");
  for (int n = 1; n <= mostOperations; ++n) {
    begin();
    const Lines bundle = scene::tree(original());
    ASSERT_EQ(::mount("/Volumes/X9", "/tmp/drive", nullptr, MS_BIND, nullptr), 0);
    int count = 0;
    std::string pulledBefore;
    GatedPlatform gated([&](const std::string& operation) -> Result<void> {
      if (++count != n) return {};
      pulledBefore = operation;
      ::umount2("/Volumes/X9", MNT_DETACH);
      return {};
    });
    const std::string said = act(gated.platform());
    if (!pulledBefore.empty()) {
      fs::remove_all("/Volumes/X9/ExternalQuarn");
      ASSERT_EQ(::mount("/tmp/drive", "/Volumes/X9", nullptr, MS_BIND, nullptr), 0);
    }
    ::umount2("/tmp/drive", MNT_DETACH);
    if (pulledBefore.empty()) break;
    SCOPED_TRACE(pulledBefore + ": " + said);
    const bool isTooLate =
        pulledBefore.starts_with("start " + gantrix) || pulledBefore.starts_with("flush " + vst3);
    if (GetParam() == Act::removeWithCopy) {
      EXPECT_EQ(said, "removed: ok");
    } else if (isOut()) {
      EXPECT_TRUE(scene::tree(copy) == bundle || scene::tree(place) == bundle);
    } else if (isTooLate) {
      EXPECT_EQ(scene::tree(copy), bundle);
    } else {
      EXPECT_TRUE(said.starts_with("failed: ")) << said;
      EXPECT_EQ(scene::tree(place), bundle);
    }
  }
}

/// Another drive takes the place of the one that was pulled.
class OtherDrives : public MovingPlugins {
 protected:
  void SetUp() override {
    if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  }
  /// The first one stays mounted elsewhere, or the system would give its device number to the other.
  static void swap() {
    scene::makeFolder("/tmp/first");
    ASSERT_EQ(::mount("/Volumes/X9", "/tmp/first", nullptr, MS_BIND, nullptr), 0);
    ::umount2("/Volumes/X9", MNT_DETACH);
    ASSERT_EQ(::mount("tmpfs", "/Volumes/X9", "tmpfs", 0, ""), 0);
  }
  const std::string gone_ = "The drive is no longer mounted: /Volumes/X9";
};

TEST_F(OtherDrives, getNothingThatWasToGoToTheFirstOne) {
  installed::makeBundle(place);
  installed::makeBundle(vst3 + "/B.vst3");
  const auto reports =
      PluginMover::moveToExternal(hostPlatform(), scanned(), drive_, [](const std::string& line) {
        if (line.starts_with("move B")) swap();
      });
  EXPECT_EQ(told(reports), movedOut + "\nfailed: " + gone_);
  EXPECT_EQ(scene::tree("/Volumes/X9").size(), 1u);
}

TEST_F(OtherDrives, keepTheirOwnCopies) {
  installed::makeBundle(place);
  installed::makeBundle(copy, "older");
  GatedPlatform gated([](const std::string& operation) -> Result<void> {
    if (operation.starts_with("createFolder")) {
      swap();
      installed::makeBundle(copy, "of another drive");
    }
    return {};
  });
  EXPECT_EQ(move(plugin(), gated.platform()), "failed: " + gone_);
  EXPECT_EQ(scene::read(copy + "/Contents/MacOS/code"), "of another drive");
}

/// Swaps the drives before a tool is started; the other one has a copy of its own, which isn't ours to
/// remove.
TEST_F(OtherDrives, keepTheirOwnCopiesOfWhatComesHomeOrGoes) {
  struct Row {
    std::string tool, said;
  };
  for (const Row& row : {Row{"/usr/bin/ditto", "restored: ok"}, Row{gantrix + " rm -rf", "removed: ok"}}) {
    fs::remove_all(place);
    makeExternalised();
    GatedPlatform gated([&](const std::string& operation) -> Result<void> {
      if (operation.starts_with("start " + row.tool)) {
        swap();
        installed::makeBundle(copy, "of another drive");
      }
      return {};
    });
    const InstalledPlugin before = plugin();
    const bool isRestored = row.said == "restored: ok";
    EXPECT_EQ(isRestored ? restore(before, gated.platform()) : remove(true, before, gated.platform()),
              row.said);
    EXPECT_EQ(scene::read(copy + "/Contents/MacOS/code"), "of another drive") << row.said;
  }
}

/// The drive goes when all has been looked at.
TEST_F(OtherDrives, costNoLink) {
  makeExternalised();
  struct Pulled : Volumes {
    Result<std::vector<Path>> mounted() const override { return hostPlatform().volumes.mounted(); }
    Result<std::vector<Path>> mountPoints() const override { return hostPlatform().volumes.mountPoints(); }
    Result<VolumeProperties> properties(const Path& item) const override {
      auto answer = hostPlatform().volumes.properties(item);
      ::umount2("/Volumes/X9", MNT_DETACH);
      return answer;
    }
  } volumes;
  Platform platform = replacing({.volumes = &volumes});
  EXPECT_EQ(restore(plugin(), platform), "failed: " + gone_);
  EXPECT_EQ(scene::target(place), copy);
}

/// On one volume nothing but the identities tells a plug-in from its copy: the folder of the copies turns
/// into a link to the system's while the move runs.
class OneVolume : public MovingPlugins {
 protected:
  void SetUp() override {
    drive_ = Path("/");
    makeNative();
    installed::makeBundle(copies_ + "/A.vst3", "older");
  }
  void expectKept(const std::string& operation) {
    const Lines bundle = scene::tree(place);
    GatedPlatform gated([&](const std::string& name) -> Result<void> {
      if (name.starts_with(operation)) {
        fs::remove_all(copies_);
        fs::create_directory_symlink(vst3, copies_);
      }
      return {};
    });
    EXPECT_TRUE(move(plugin(), gated.platform()).starts_with("failed: "));
    EXPECT_EQ(scene::tree(place), bundle);
  }

  const std::string copies_ = "/ExternalQuarn/Plugins/VST3";
};

TEST_F(OneVolume, keepsAPluginThatTheOldCopyHasBecome) {
  expectKept("createFolder");
}

TEST_F(OneVolume, keepsAPluginThatTheNewCopyHasBecome) {
  expectKept("flush " + copies_);
}

TEST_F(OneVolume, keepsACopyThatThePluginHasBecome) {
  fs::remove_all(place);
  scene::link(place, copies_ + "/A.vst3");
  const Lines bundle = scene::tree(copies_ + "/A.vst3");
  GatedPlatform gated([&](const std::string& operation) -> Result<void> {
    if (operation.starts_with("flush " + place)) {
      fs::remove_all(vst3);
      fs::create_directory_symlink(copies_, vst3);
    }
    return {};
  });
  EXPECT_TRUE(restore(plugin(), gated.platform()).starts_with("failed: "));
  EXPECT_EQ(scene::tree(copies_ + "/A.vst3"), bundle);
}

// Tools.

class FaultsOfTools : public MovingPlugins {
 protected:
  void SetUp() override { makeNative(); }
};

TEST_F(FaultsOfTools, areTheMessage) {
  order("ditto", "fail 1 no copy");
  EXPECT_EQ(move(), "failed: ditto: no copy\n");
  order("ditto", "");
  order("gantrix", "on rm fail 3 not root");
  EXPECT_EQ(move(), "failed: rm: not root\n");
  EXPECT_EQ(remove(false), "failed: rm: not root\n");
  order("gantrix", "on ln fail 3 no link");
  EXPECT_EQ(move(), "failed: ln: no link\n");
  EXPECT_FALSE(scene::exists(place));
  EXPECT_EQ(scene::read(copy + "/Contents/MacOS/code"), "code");
  scene::link(place, copy);
  order("gantrix", "on rm fail 3 not root");
  EXPECT_EQ(restore(), "failed: rm symlink: not root\n");
  order("gantrix", "");
  order("ditto", "fail 1 no room");
  EXPECT_EQ(restore(), "failed: ditto restore: no room\n");
  EXPECT_FALSE(scene::exists(place));
  EXPECT_EQ(scene::read(copy + "/Contents/MacOS/code"), "code");
}

TEST_F(FaultsOfTools, thatAreMissingAreTold) {
  scene::removeTool(gantrix);
  const Lines bundle = scene::tree(place);
  EXPECT_TRUE(move().starts_with("failed: rm: ")) << move();
  EXPECT_NE(move(), "failed: rm: ");
  EXPECT_EQ(scene::tree(place), bundle);
  scene::removeTool("/usr/bin/ditto");
  EXPECT_TRUE(move().starts_with("failed: ditto: ")) << move();
  EXPECT_EQ(scene::tree(place), bundle);
}

TEST_F(FaultsOfTools, thatSayMoreThanAnyoneReadsStopNothing) {
  order("ditto", "flood 2");
  order("gantrix", "flood 2");
  EXPECT_EQ(move(), movedOut);
  EXPECT_EQ(restore(), "restored: ok");
}

TEST_F(FaultsOfTools, thatClaimASuccessAreNotBelieved) {
  scene::replaceTool(gantrix, "#!/bin/sh\nexit 0\n");
  const Lines bundle = scene::tree(place);
  EXPECT_EQ(move(), "failed: rm: “" + place + "” is still there.");
  EXPECT_EQ(remove(false), "failed: rm: “" + place + "” is still there.");
  EXPECT_EQ(scene::tree(place), bundle);
  scene::replaceTool(gantrix, "#!/bin/sh\n[ \"$1\" = rm ] || exit 0\nexec \"$@\"\n");
  EXPECT_EQ(move(), "failed: ln: “" + place + "” is missing.");
  EXPECT_EQ(scene::tree(copy), bundle);
  scene::link(place, copy);
  scene::replaceTool(gantrix, "#!/bin/sh\nexit 0\n");
  EXPECT_EQ(restore(), "failed: rm symlink: “" + place + "” is still there.");
  EXPECT_EQ(scene::tree(copy), bundle);
}

TEST_F(FaultsOfTools, thatLeaveSomethingOutCostNothing) {
  scene::replaceTool(
      "/usr/bin/ditto",
      "#!/bin/sh\n/usr/libexec/quarn-room/quarn-ditto \"$@\" && rm \"$3/Contents/MacOS/code\"\n");
  const Lines bundle = scene::tree(place);
  EXPECT_TRUE(move().starts_with("failed: Verification failed: ")) << move();
  EXPECT_EQ(scene::tree(place), bundle);
  fs::remove_all(place);
  makeExternalised();
  EXPECT_TRUE(restore().starts_with("failed: Verification failed: "));
  EXPECT_EQ(scene::tree(copy), bundle);
}

TEST_F(FaultsOfTools, thatStopHalfwayThroughTheRemovalLeaveTheWholeCopy) {
  scene::replaceTool(gantrix, "#!/bin/sh\nrm -rf \"$3/Contents/MacOS\"\necho halfway >&2\nexit 1\n");
  const Lines bundle = scene::tree(place);
  EXPECT_EQ(move(), "failed: rm: halfway\n");
  EXPECT_EQ(scene::tree(copy), bundle);
  EXPECT_TRUE(move().starts_with("failed: “" + place + "” lacks what “" + copy + "” has: "));
  EXPECT_EQ(scene::tree(copy), bundle);
}

TEST_F(FaultsOfTools, thatStopHalfwayThroughTheCopyBackLeaveTheWholeCopy) {
  const Lines bundle = scene::tree(place);
  ASSERT_EQ(move(), movedOut);
  scene::replaceTool(
      "/usr/bin/ditto",
      "#!/bin/sh\n/usr/libexec/quarn-room/quarn-ditto \"$@\"\nprintf co >\"$3/Contents/MacOS/code\"\n"
      "echo full >&2\nexit 1\n");
  EXPECT_EQ(restore(), "failed: ditto restore: full\n");
  EXPECT_EQ(scene::tree(copy), bundle);
  EXPECT_EQ(restore(), "skipped: not externalised");
  EXPECT_EQ(move(), "failed: “" + place + "” is an unfinished copy of “" + copy + "”.");
  EXPECT_EQ(scene::tree(copy), bundle);
}

/// A volume is mounted in the plug-in when it has been copied.
TEST_F(FaultsOfTools, thatTakeLongMeetAVolumeThatIsMountedMeanwhile) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  const std::string inside = place + "/Contents/volume";
  makeNative();
  scene::makeFolder(inside);
  const Lines bundle = scene::tree(place);
  GatedPlatform gated([&](const std::string& operation) -> Result<void> {
    if (operation == "flush " + copy) {
      EXPECT_EQ(::mount("tmpfs", inside.c_str(), "tmpfs", 0, "mode=755"), 0);
    }
    return {};
  });
  EXPECT_EQ(move(plugin(), gated.platform()),
            "failed: A volume is mounted inside A.vst3: " + inside + ". Eject it first.");
  EXPECT_EQ(scene::tree(place), bundle);
}

/// A person puts a link to another plug-in in the place while the copy is made.
TEST_F(FaultsOfTools, thatTakeLongMeetWhatOthersDoMeanwhile) {
  installed::makeBundle("/Users/me/mine.vst3");
  const Lines mine = scene::tree("/Users/me/mine.vst3");
  scene::replaceTool("/usr/bin/ditto", "#!/bin/sh\n/usr/libexec/quarn-room/quarn-ditto \"$@\" && mv " +
                                           place + " /Users/me/kept && ln -s /Users/me/mine.vst3 " + place +
                                           "\n");
  EXPECT_EQ(move(), "failed: “" + place + "” was replaced meanwhile.");
  EXPECT_EQ(scene::target(place), "/Users/me/mine.vst3");
  EXPECT_EQ(scene::tree("/Users/me/mine.vst3"), mine);
}

}  // namespace
}  // namespace quarn
