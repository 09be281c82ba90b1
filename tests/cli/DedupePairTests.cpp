#include <filesystem>
#include <gtest/gtest.h>

#include "tests/cli/DedupeScenes.h"
#include "tests/cli/Faults.h"
#include "tests/cli/Two.h"

/// A run that isn't alone: the outcome is that of one order or of the other.

using namespace dedupes;
using turns::milliseconds;
using turns::Two;

namespace {

namespace fs = std::filesystem;

const std::vector<int> gaps = {0, 0, 5, 20, 60, 120, 250};
const std::string run = "quarn dedupe run --yes";
const std::string copy = "/Volumes/X9/ExternalQuarn/Apps/Foo.app";

class DedupePairs : public testing::Test {
 protected:
  void SetUp() override {
    // Long enough that the runs meet at every step.
    fault::replaceDitto("sleep 0.04; " + fault::realDitto + "; code=$?; sleep 0.04; exit $code");
    scene::replaceTool("/usr/bin/codesign",
                       "#!/bin/sh\nsleep 0.04; /usr/libexec/quarn-room/codesign \"$@\"; code=$?; "
                       "sleep 0.04; exit $code\n");
  }
  void clear() {
    for (const std::string folder : {"/Applications", "/Users/me/Applications", "/Volumes/X9"}) {
      scene::makeFolder(folder);
      for (const auto& item : fs::directory_iterator(folder)) fs::remove_all(item);
    }
    fs::remove_all(trash);
    fs::remove_all(scene::home + "/Library/Application Support/Quarn");
  }
  static bool says(const std::string& text, const std::string& piece) {
    return text.find(piece) != std::string::npos;
  }
};

TEST_F(DedupePairs, ofTwoRunsOneTakesTheLaunchersAndTheOtherFindsNone) {
  for (const int gap : {0, 0, 0, 1, 2, 5, 10}) {
    clear();
    setScene();
    const auto whole = scene::tree(launcher), stays = scene::tree(app);
    const Two two(run, run, milliseconds(gap));
    EXPECT_TRUE(two.oneSays("run: trashed 3 item(s)\n")) << two.all();
    EXPECT_TRUE(two.oneSays("run: trashed 0 item(s)\n")) << two.all();
    EXPECT_FALSE(says(two.all(), "FAIL")) << two.all();
    EXPECT_EQ(fault::names(trash), (Lines{"Bar.app", "Foo Launcher.app", "Without.app"})) << two.all();
    EXPECT_EQ(scene::tree(trash + "/Foo Launcher.app"), whole);
    EXPECT_EQ(scene::tree(app), stays);
  }
}

TEST_F(DedupePairs, besideAMoveOfItsApplicationTheLauncherGoesBeforeItOrStays) {
  for (const int gap : gaps) {
    for (const bool isFirst : {false, true}) {
      clear();
      scene::makeApp(app);
      scene::makeLauncher(launcher, app);
      const auto whole = scene::tree(app), shim = scene::tree(launcher);
      const std::string move = "quarn move one /Applications/Foo.app --yes --no-data";
      const Two two(isFirst ? run : move, isFirst ? move : run, milliseconds(gap));
      EXPECT_EQ(scene::target(app), copy) << two.all();
      EXPECT_EQ(scene::tree(copy), whole) << two.all();
      const bool went = says(two.all(), "run: trashed 1 item(s)\n");
      EXPECT_NE(went, says(two.all(), "run: trashed 0 item(s)\n")) << two.all();
      EXPECT_EQ(scene::exists(launcher), !went) << two.all();
      EXPECT_EQ(scene::tree(went ? trash + "/Foo Launcher.app" : launcher), shim) << two.all();
    }
  }
}

TEST_F(DedupePairs, duringAMoveItWaitsAndFindsTheLinkThen) {
  clear();
  scene::makeApp(app);
  scene::makeLauncher(launcher, app);
  fault::replaceDitto("touch /tmp/half; while [ ! -e /tmp/go ]; do sleep 0.02; done; exec " +
                      fault::realDitto);
  scene::Background move(
      {"/bin/sh", "-c", "quarn move one /Applications/Foo.app --yes --no-data >/tmp/1 2>&1"});
  ASSERT_TRUE(scene::appears("/tmp/half"));
  scene::Background late({"/bin/sh", "-c", run + " >/tmp/2.out 2>/tmp/2.err"});
  for (int i = 0; i < 3000 && (!scene::exists("/tmp/2.err") || scene::read("/tmp/2.err").empty()); ++i)
    std::this_thread::sleep_for(milliseconds(20));
  EXPECT_EQ(scene::read("/tmp/2.err"), turns::waiting);
  scene::write("/tmp/go", "");
  EXPECT_EQ(move.wait(), 0);
  EXPECT_EQ(late.wait(), 0);
  EXPECT_EQ(scene::read("/tmp/2.out"),
            "Duplicate launcher groups: 0\nRemovable: 0 item(s), Zero KB\nrun: trashed 0 item(s)\n");
  EXPECT_TRUE(scene::exists(launcher));
}

TEST_F(DedupePairs, besideARepairEachLauncherGoesOnceByTheOneThatItIsFor) {
  const std::string stale = "/Applications/Stale.app";
  for (const int gap : {0, 0, 2, 5, 10, 30}) {
    for (const bool isFirst : {false, true}) {
      clear();
      scene::makeApp(app, {.version = "2.0"});
      scene::makeApp(copy);
      scene::makeLauncher(launcher, app);
      scene::makeLauncher(stale, copy);
      const auto fresh = scene::tree(app), old = scene::tree(copy);
      const auto shim = scene::tree(launcher), staleShim = scene::tree(stale);
      const std::string repair = "quarn health repair --yes --no-snapshot --reclaim-reverted";
      const Two two(isFirst ? run : repair, isFirst ? repair : run, milliseconds(gap));
      EXPECT_EQ(scene::tree(app), fresh) << two.all();
      EXPECT_EQ(scene::tree(scene::driveTrash() + "/Foo.app"), old) << two.all();
      EXPECT_TRUE(says(two.all(), "run: trashed 1 item(s)\n")) << two.all();
      EXPECT_TRUE(says(two.all(), "  trashed stale launcher shim " + stale + "\n")) << two.all();
      EXPECT_EQ(scene::tree(trash + "/Foo Launcher.app"), shim) << two.all();
      EXPECT_EQ(scene::tree(trash + "/Stale.app"), staleShim) << two.all();
      EXPECT_EQ(fault::names(trash).size(), 2u) << two.all();
    }
  }
}

TEST_F(DedupePairs, besideAnInstallationThatRebuildsTheLauncherTheNewOneStays) {
  for (const int gap : gaps) {
    for (const bool isFirst : {false, true}) {
      clear();
      scene::makeApp(own + "/Foo.app");
      scene::makeApp("/Users/me/Foo.app", {.version = "2.0"});
      scene::makeLauncher(app, "/nowhere/Foo.app");
      const auto real = scene::tree(own + "/Foo.app"), shim = scene::tree(app);
      const std::string install =
          "quarn install run /Users/me/Foo.app --option trusted-external --target-drive /Volumes/X9";
      const Two two(isFirst ? run : install, isFirst ? install : run, milliseconds(gap));
      EXPECT_TRUE(says(two.all(), "id = \"")) << two.all();
      EXPECT_EQ(scene::tree(own + "/Foo.app"), real) << two.all();
      EXPECT_EQ(scene::read(app + targetFile), copy) << two.all();
      EXPECT_TRUE(scene::exists(copy + "/Contents/Info.plist")) << two.all();
      EXPECT_EQ(fault::names(trash), Lines{"Foo.app"}) << two.all();
      EXPECT_EQ(scene::tree(trash + "/Foo.app"), shim) << two.all();
      EXPECT_FALSE(says(two.all(), "FAIL")) << two.all();
    }
  }
}

}  // namespace
