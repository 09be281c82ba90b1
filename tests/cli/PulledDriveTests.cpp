#include <filesystem>
#include <gtest/gtest.h>
#include <unistd.h>

#include "tests/cli/CallSweep.h"
#include "tests/cli/Campaign.h"
#include "tests/cli/DriveScenes.h"
#include "tests/cli/Faults.h"
#include "tests/support/linux/ChangingCalls.h"
#include "tests/support/linux/KilledAt.h"
#include "tests/support/linux/OwnMounts.h"

using namespace fault;
using campaign::Command;
using campaign::Trial;

namespace {

namespace fs = std::filesystem;

class PulledDrive : public testing::TestWithParam<Command> {
 protected:
  void SetUp() override {
    if (const std::string reason = scene::whyNotTraced(); !reason.empty()) GTEST_SKIP() << reason;
  }

  bool pullAt(int n, bool leavesItsMountPoint) {
    Trial trial(GetParam());
    const PocketDrive drive;
    const auto met = sweep::pulledAt(n, leavesItsMountPoint, GetParam().words());
    if (!met) return false;
    // Before the next run, which is judged by itself.
    const std::string now = trial.problems({met->status, met->said});
    EXPECT_EQ(now + trial.problemsOfNextRun(), "") << met->fault << "\n" << met->said;
    return true;
  }
};

INSTANTIATE_TEST_SUITE_P(Moves, PulledDrive, testing::ValuesIn(campaign::commands()),
                         [](const auto& instance) { return instance.param.name; });

TEST_P(PulledDrive, atAnyCallLosesNothingAndNothingIsTakenForIt) {
  for (const bool leavesItsMountPoint : {false, true}) {
    sweep::forEachCall(leavesItsMountPoint ? 1 : 15, 29,
                       [&](int n) { return pullAt(n, leavesItsMountPoint); });
  }
}

TEST(ReadOnlyDrive, whatCannotLeaveItStaysLinked) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  scene::plug("Y9", "1m");
  const std::string place = "/Volumes/Y9/ExternalQuarn/Apps/Foo.app";
  scene::makeApp(place);
  scene::link(app, place);
  ASSERT_TRUE(child::makeReadOnly("/Volumes/Y9"));
  const auto before = scene::tree("/Volumes/Y9"), applications = scene::tree("/Applications");
  for (const std::vector<std::string>& command :
       {std::vector<std::string>{"move", "back", "Foo"}, {"move", "restore", app}}) {
    const auto run = scene::quarn(command);
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_TRUE(run.err.starts_with("error\t")) << run.err;
    EXPECT_EQ(scene::tree("/Volumes/Y9"), before);
    EXPECT_EQ(scene::tree("/Applications"), applications);
  }
}

/// Something wrote to the drive after it was pulled out, so its name is taken when it comes back.
TEST(DriveUnderAnotherName, isNotTakenForTheFolderThatHasItsName) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  scene::makeApp(moved);
  scene::link(app, moved);
  scene::makeApp("/Applications/New.app", {.identifier = "com.example.new"});
  scene::writeBytes("/Users/me/Movies/a.mov", 3000);
  PocketDrive drive;
  PocketDrive::pull(true);
  PocketDrive::plugAt("/Volumes/X9 1");
  const auto applications = scene::tree("/Applications"), volumes = scene::tree("/Volumes"),
             movies = scene::tree("/Users/me/Movies");
  const std::pair<std::vector<std::string>, std::string> rows[] = {
      {{"move", "back", "Foo"}, "No such item: " + app},
      {{"move", "restore", app}, "Source path no longer exists."},
      {{"move", "one", "com.example.new", "--target-drive", "X9", "--yes"},
       "Target drive not found: X9. Run `move drives` to list mounts."},
      {{"move", "next", "--target-drive", "/Volumes/X9", "--yes"},
       "Target drive not found: /Volumes/X9. Run `move drives` to list mounts."},
      {{"move", "all", "--target-drive", "/Volumes/X9", "--yes"},
       "Target drive not found: /Volumes/X9. Run `move drives` to list mounts."},
      {{"move", "path", "--source", "/Users/me/Movies", "--destination", "/Volumes/X9/Movies", "--yes"},
       "No drive is mounted there: /Volumes/X9/Movies"},
  };
  for (const auto& [command, message] : rows) {
    EXPECT_EQ(expected::shown(scene::quarn(command)), expected::failed(message));
    EXPECT_EQ(scene::tree("/Applications"), applications);
    EXPECT_EQ(scene::tree("/Volumes"), volumes);
    EXPECT_EQ(scene::tree("/Users/me/Movies"), movies);
  }
  EXPECT_EQ(scene::quarn({"move", "one", "com.example.new", "--yes"}).status, 0);
  EXPECT_EQ(scene::target("/Applications/New.app"), "/Volumes/X9 1/ExternalQuarn/Apps/New.app");
}

}  // namespace
