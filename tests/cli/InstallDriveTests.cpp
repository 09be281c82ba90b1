#include <chrono>
#include <csignal>
#include <functional>
#include <gtest/gtest.h>

#include "tests/cli/AnyMoment.h"
#include "tests/cli/CallSweep.h"
#include "tests/cli/CampaignLooks.h"
#include "tests/cli/DriveScenes.h"
#include "tests/cli/Faults.h"
#include "tests/cli/InstallCampaign.h"
#include "tests/support/linux/ChangingCalls.h"
#include "tests/support/linux/KilledAt.h"
#include "tests/support/linux/OwnMounts.h"

/// Installations whose drive goes away, is full or can't be written to, and those that are ended from outside
/// at any moment.

using campaign::says;
using installs::Job;
using installs::jobOf;
using installs::Lines;
using installs::Outcome;
using installs::Trial;

namespace {

namespace fs = std::filesystem;

const std::string copyOfFoo = installs::drivesApps + "/Foo.app";

class InstallDrive : public testing::TestWithParam<Job> {
 protected:
  void SetUp() override {
    if (const std::string reason = scene::whyNotTraced(); !reason.empty()) GTEST_SKIP() << reason;
    if (const std::string reason = installs::whyNoStock(); !reason.empty()) GTEST_SKIP() << reason;
  }

  static bool pullAt(int n, bool leavesItsMountPoint) {
    const Trial trial(GetParam());
    const PocketDrive drive;
    const auto met = sweep::pulledAt(n, leavesItsMountPoint, GetParam().words());
    if (!met) return false;
    const std::string now = trial.problems({met->status, met->said});
    EXPECT_EQ(now + trial.problemsOfNextRun(), "") << GetParam().name << ", " << met->fault << "\n"
                                                   << met->said;
    return true;
  }
};

Lines namesOfPulled() {
  return {"app",          "appOverOthers", "appInPlace", "zip",        "package",
          "namedPackage", "resume",        "undoApp",    "undoPackage"};
}

std::vector<Job> jobsNamed(const Lines& names) {
  std::vector<Job> found;
  for (const std::string& name : names) found.push_back(jobOf(name));
  return found;
}

INSTANTIATE_TEST_SUITE_P(Of, InstallDrive, testing::ValuesIn(jobsNamed(namesOfPulled())),
                         [](const auto& job) { return job.param.name; });

TEST_P(InstallDrive, pulledAtAnyCallLosesNothingAndNothingIsTakenForIt) {
  for (const bool leavesItsMountPoint : {false, true}) {
    sweep::forEachCall(leavesItsMountPoint ? 1 : 15, 29,
                       [&](int n) { return pullAt(n, leavesItsMountPoint); });
  }
}

// A drive that doesn't take it.

class InstallOnto : public testing::Test {
 protected:
  void SetUp() override {
    if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
    if (const std::string reason = installs::whyNoStock(); !reason.empty()) GTEST_SKIP() << reason;
  }
  static scene::Run onto(const std::string& source, const std::string& drive) {
    return scene::quarn({"install", "run", source, "--option", "trusted-external", "--target-drive", drive});
  }
};

TEST_F(InstallOnto, aFullDriveLeavesTheApplicationWholeAndNoPartOfACopy) {
  scene::plug("Tiny", "256k");
  scene::makeApp("/Applications/Foo.app", {}, 900'000);
  const Lines whole = scene::tree("/Applications/Foo.app");
  const auto run = onto("/Applications/Foo.app", "/Volumes/Tiny");
  EXPECT_EQ(run.status, 1);
  EXPECT_TRUE(run.err.starts_with("error\t") && says(run.err, "space")) << run.err;
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(scene::tree("/Applications/Foo.app"), whole);
  EXPECT_EQ(fault::names("/Volumes/Tiny/ExternalQuarn/Apps"), Lines{});
}

TEST_F(InstallOnto, aFullDriveLeavesThePackagesApplicationsPendingUntilThereIsRoom) {
  scene::plug("Tiny", "64k");
  scene::writeBytes("/Volumes/Tiny/film", 60'000);
  const Trial trial(jobOf("package"), {"/Volumes/Tiny"});
  const auto run = onto(jobOf("package").arguments[2], "/Volumes/Tiny");
  EXPECT_EQ(run.status, 0) << run.err;
  for (const std::string app : {"One.app", "Two.app"})
    EXPECT_EQ(scene::tree("/Applications/" + app), scene::tree(installs::stockOf(app))) << run.out;
  EXPECT_EQ(fault::names("/Volumes/Tiny/ExternalQuarn/Apps"), Lines{});
  const auto pending = scene::quarn({"install", "pending"});
  EXPECT_TRUE(says(pending.out, "\t/Applications/One.app,/Applications/Two.app\n")) << pending.out;
  fs::remove("/Volumes/Tiny/film");
  const std::string id = pending.out.substr(pending.out.find('\n') + 1, 15);
  const auto again = scene::quarn({"install", "resume", id});
  EXPECT_EQ(again.out, "session\t" + id + "\tdone\n") << again.err;
  for (const std::string app : {"One.app", "Two.app"})
    EXPECT_EQ(scene::tree("/Volumes/Tiny/ExternalQuarn/Apps/" + app), scene::tree(installs::stockOf(app)));
}

TEST_F(InstallOnto, aReadOnlyDriveChangesNothing) {
  scene::plug("Y9", "1m");
  scene::makeApp("/Volumes/Y9/ExternalQuarn/Apps/Foo.app");
  ASSERT_TRUE(child::makeReadOnly("/Volumes/Y9"));
  scene::makeApp("/Applications/Foo.app", {}, 900);
  const Lines applications = scene::tree("/Applications"), drive = scene::tree("/Volumes/Y9");
  const auto run = onto("/Applications/Foo.app", "/Volumes/Y9");
  EXPECT_EQ(run.status, 1);
  EXPECT_TRUE(run.err.starts_with("error\t")) << run.err;
  EXPECT_EQ(scene::tree("/Applications"), applications);
  EXPECT_EQ(scene::tree("/Volumes/Y9"), drive);
}

/// Something wrote to the drive after it was pulled out, so its name is taken when it comes back.
TEST_F(InstallOnto, aDriveThatIsBackUnderAnotherNameIsNotItsOldFolder) {
  const Trial trial(jobOf("resume"));
  PocketDrive drive;
  PocketDrive::pull(true);
  PocketDrive::plugAt("/Volumes/X9 1");
  const Lines applications = scene::tree("/Applications"), volumes = scene::tree("/Volumes");
  const auto run = onto(installs::stockOf("Foo.app"), "/Volumes/X9");
  EXPECT_EQ(expected::shown(run), expected::failed("No drive is mounted there: /Volumes/X9"));
  const auto resumed = scene::quarn({"install", "resume", installs::sceneSession});
  EXPECT_TRUE(says(resumed.out, "\tpartial — some apps still pending\n")) << resumed.out << resumed.err;
  EXPECT_TRUE(scene::quarn({"install", "uninstall", installs::sceneSession}).out.empty());
  EXPECT_EQ(scene::tree("/Applications"), applications);
  EXPECT_EQ(scene::tree("/Volumes"), volumes);
  EXPECT_EQ(onto(installs::stockOf("Foo.app"), "/Volumes/X9 1").status, 0);
  EXPECT_EQ(scene::tree("/Volumes/X9 1/ExternalQuarn/Apps/Foo.app"),
            scene::tree(installs::stockOf("Foo.app")));
  scene::unplug("X9 1");
  PocketDrive::plug();
  fs::remove_all("/Applications/Foo.app");
  fs::remove_all(copyOfFoo);
  EXPECT_EQ(trial.problemsOfNextRun(), "");
}

// Ended from outside.

class InstallSignals : public testing::TestWithParam<Job> {
 protected:
  void SetUp() override {
    if (const std::string reason = installs::whyNoStock(); !reason.empty()) GTEST_SKIP() << reason;
  }
  /// From the start of a run to well behind its end.
  static std::chrono::milliseconds longest() {
    const bool isSlow = GetParam().way == installs::Way::package;
    return std::chrono::milliseconds(isSlow ? 600 : 120);
  }

  static void judge(const Trial& trial, const Outcome& outcome, const std::string& what) {
    // The tools that the run started may go on to their end.
    scene::shell(
        "while pgrep -f '/usr/(s?bin|libexec/quarn-room)/(ditto|installer|pkgutil|xar|codesign)' >/dev/null; "
        "do sleep "
        "0.01; done");
    const std::string now = trial.problems(outcome);
    EXPECT_EQ(now + trial.problemsOfNextRun(), "") << GetParam().name << ", " << what << "\n" << outcome.said;
  }

  anymoment::Moments moments_{longest()};
};

INSTANTIATE_TEST_SUITE_P(Of, InstallSignals, testing::ValuesIn(jobsNamed(namesOfPulled())),
                         [](const auto& job) { return job.param.name; });

TEST_P(InstallSignals, endARunAtAnyMomentAndLoseNothing) {
  for (int i = 0; i < anymoment::rounds(); ++i) {
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
      const Trial trial(GetParam());
      const auto ended = anymoment::bySignal(GetParam().line(), number, moments_.next());
      judge(trial, {ended.status, ended.said, ended.wasEnded}, ended.how);
    }
  }
}

TEST_P(InstallSignals, aPipeClosedAtAnyMomentLosesNothing) {
  for (int i = 0; i < anymoment::rounds(); ++i) {
    const Trial trial(GetParam());
    const auto ended = anymoment::byClosedPipe(GetParam().line(), moments_.next());
    judge(trial, {ended.status, ended.said, ended.wasEnded}, ended.how);
  }
}

}  // namespace
