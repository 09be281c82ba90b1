#include <chrono>
#include <gtest/gtest.h>
#include <thread>

#include "tests/cli/Faults.h"

using namespace expected;
using namespace fault;

namespace {

/// Until the copy is complete its top folder has the mode of a claim.
std::vector<std::string> belowTheTop(std::vector<std::string> tree) {
  tree.erase(tree.begin());
  return tree;
}

/// A tool of quarn's kills it at a known stage; what must be found then, and what the next attempt does.
class KilledByTool : public testing::Test {
 protected:
  void SetUp() override {
    scene::makeApp(app);
    before = scene::tree(app);
    bytes = sizeOf(app);
    others = foreign();
  }

  void expectKilled() {
    EXPECT_EQ(moveOne().status, -9);
    // The tool that killed it may have something left to do.
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    EXPECT_EQ(scene::tree(app), before);
    EXPECT_FALSE(scene::exists(scene::manifest));
    EXPECT_EQ(foreign(), others);
  }
  void expectNextAttemptMoves() {
    EXPECT_EQ(shown(moveOne()), succeeded(bytes));
    EXPECT_EQ(scene::tree(moved), before);
    EXPECT_EQ(scene::target(app), moved);
  }
  void expectNextAttemptRefused() {
    const auto driveBefore = scene::tree(apps);
    EXPECT_EQ(shown(moveOne()), refused(bytes, "Destination already exists."));
    EXPECT_EQ(scene::tree(app), before);
    EXPECT_EQ(scene::tree(apps), driveBefore);
  }

  std::vector<std::string> before;
  std::string bytes;
  std::vector<std::string> others;
};

TEST_F(KilledByTool, whileItLooksAtWhatRunsTheNextAttemptMoves) {
  const std::string content = scene::read("/bin/ps");
  std::filesystem::copy_file("/bin/ps", "/usr/libexec/quarn-room/ps");
  scene::replaceTool("/bin/ps", "#!/bin/sh\nkill -9 $PPID\n");
  expectKilled();
  EXPECT_FALSE(scene::exists(moved));
  scene::replaceTool("/bin/ps", content);
  expectNextAttemptMoves();
}

TEST_F(KilledByTool, beforeTheFirstByteIsCopiedTheClaimedPlaceIsEmptyAndTheNextAttemptIsRefused) {
  replaceDitto("kill -9 $PPID");
  expectKilled();
  EXPECT_EQ(names(moved), std::vector<std::string>{});
  replaceDitto("exec " + realDitto);
  expectNextAttemptRefused();
}

TEST_F(KilledByTool, inTheMiddleOfTheCopyTheNextAttemptIsRefused) {
  replaceDitto("mkdir -p \"$3/Contents\"; cp \"$2/Contents/Info.plist\" \"$3/Contents/\"; kill -9 $PPID");
  expectKilled();
  EXPECT_EQ(names(moved + "/Contents"), std::vector<std::string>{"Info.plist"});
  replaceDitto("exec " + realDitto);
  expectNextAttemptRefused();
}

TEST_F(KilledByTool, whileTheToolGoesOnCopyingTheNextAttemptIsRefused) {
  replaceDitto("kill -9 $PPID; exec " + realDitto);
  expectKilled();
  ASSERT_TRUE(scene::appears(moved));
  EXPECT_EQ(belowTheTop(scene::tree(moved)), belowTheTop(before));
  expectNextAttemptRefused();
}

TEST_F(KilledByTool, atTheEndOfTheCopyTheNextAttemptIsRefused) {
  replaceDitto(realDitto + "; kill -9 $PPID");
  expectKilled();
  EXPECT_EQ(belowTheTop(scene::tree(moved)), belowTheTop(before));
  replaceDitto("exec " + realDitto);
  expectNextAttemptRefused();
}

TEST_F(KilledByTool, whileTheCopyIsComparedTheNextAttemptIsRefused) {
  scene::replaceTool("/usr/bin/find", "#!/bin/sh\nkill -9 $PPID\n");
  expectKilled();
  EXPECT_EQ(scene::tree(moved), before);
  expectNextAttemptRefused();
}

TEST(KilledMovePath, inTheMiddleOfTheCopyTheSourceIsWholeAndTheNextAttemptMoves) {
  const std::string source = "/Users/me/Movies";
  const std::vector<std::string> command = {
      "move", "path", "--source", source, "--destination", "/Volumes/X9/Movies", "--yes"};
  scene::writeBytes(source + "/a.mov", 30'000);
  scene::writeBytes(source + "/b.mov", 30'000);
  const auto before = scene::tree(source);
  std::filesystem::rename("/usr/bin/rsync", "/usr/libexec/quarn-room/rsync");
  scene::replaceTool("/usr/bin/rsync",
                     "#!/bin/sh\ncp /Users/me/Movies/a.mov /Volumes/X9/Movies/\nkill -9 $PPID\n");
  EXPECT_EQ(scene::quarn(command).status, -9);
  EXPECT_EQ(scene::tree(source), before);
  std::filesystem::rename("/usr/libexec/quarn-room/rsync", "/usr/bin/rsync");
  EXPECT_EQ(scene::quarn(command).status, 0);
  EXPECT_EQ(scene::target(source), "/Volumes/X9/Movies");
  EXPECT_EQ(scene::tree("/Volumes/X9/Movies"), before);
}

}  // namespace
