#include <csignal>
#include <cstdio>
#include <filesystem>
#include <gtest/gtest.h>

#include "tests/cli/AnyMoment.h"
#include "tests/cli/CallSweep.h"
#include "tests/cli/DriveScenes.h"
#include "tests/cli/PluginCampaign.h"
#include "tests/cli/Two.h"
#include "tests/support/linux/KilledAt.h"
#include "tests/support/linux/OwnMounts.h"

/// Plug-ins onto a drive that goes away, is full or can't be written to; runs that are ended from outside at
/// any moment; and two at once.

using plugins::Job;
using plugins::Lines;
using plugins::Trial;

namespace {

namespace fs = std::filesystem;

const std::string native = plugins::system + "/VST3/A.vst3";

std::string told(const scene::Run& run) {
  return run.out + run.err;
}

bool says(const std::string& text, const std::string& piece) {
  return text.find(piece) != std::string::npos;
}

class PluginRuns : public testing::TestWithParam<Job> {
 protected:
  void SetUp() override { plugins::quickenTools(); }

  static void judge(const Trial& trial, const plugins::Outcome& outcome, const std::string& what) {
    // The tools that the run started go on to their end.
    scene::shell(
        "while pgrep -f '/usr/(bin|local/bin|libexec/quarn-room)/(quarn-)?(ditto|gantrix|codesign|xattr)' "
        ">/dev/null || pgrep -f '^(rm -rf|ln -s) .*/Plug-Ins/' >/dev/null; do sleep 0.01; done");
    const std::string now = trial.problems(outcome);
    EXPECT_EQ(now + trial.problemsOfNextRun(), "") << GetParam().name << ", " << what << "\n" << outcome.said;
  }
  anymoment::Moments moments_{std::chrono::milliseconds(120)};
};

INSTANTIATE_TEST_SUITE_P(From, PluginRuns, testing::Values(plugins::fromFolder(), plugins::fromSystem()),
                         [](const auto& job) { return job.param.name; });

// A drive that goes.

TEST_P(PluginRuns, aDrivePulledAtAnyCallLosesNothingAndNothingIsTakenForIt) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  if (const std::string reason = scene::whyNotTraced(); !reason.empty()) GTEST_SKIP() << reason;
  int runs = 0;
  for (const bool leavesItsMountPoint : {false, true}) {
    sweep::forEachCall(leavesItsMountPoint ? 2 : 1, 5, [&](int n) {
      const Trial trial(GetParam());
      const PocketDrive drive;
      const auto met = sweep::pulledAt(n, leavesItsMountPoint, GetParam().words());
      if (!met) return false;
      ++runs;
      judge(trial, {met->status, met->said}, met->fault);
      return true;
    });
  }
  std::printf("%s: %d runs\n", GetParam().name.c_str(), runs);
}

// Ended from outside.

TEST_P(PluginRuns, areEndedBySignalsAtAnyMomentAndLoseNothing) {
  for (int i = 0; i < anymoment::rounds(); ++i) {
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
      const Trial trial(GetParam());
      const auto ended = anymoment::bySignal(GetParam().line(), number, moments_.next());
      judge(trial, {ended.status, ended.said, ended.wasEnded}, ended.how);
    }
  }
}

TEST_P(PluginRuns, aPipeClosedAtAnyMomentLosesNothing) {
  for (int i = 0; i < anymoment::rounds(); ++i) {
    const Trial trial(GetParam());
    const auto ended = anymoment::byClosedPipe(GetParam().line(), moments_.next());
    judge(trial, {ended.status, ended.said, ended.wasEnded}, ended.how);
  }
}

TEST_P(PluginRuns, aRunWhoseToolHangsCanBeEnded) {
  for (const std::string tool : {"ditto", "gantrix", "codesign"}) {
    const Trial trial(GetParam());
    scene::replaceTool(tool == "gantrix" ? "/usr/local/bin/gantrix" : "/usr/bin/" + tool,
                       "#!/bin/sh\necho $$ >/tmp/pid; mv /tmp/pid /tmp/hangs\nexec sleep 1000\n");
    fs::remove("/tmp/hangs");
    scene::Background run({"/bin/sh", "-c", "exec " + GetParam().line() + " >/tmp/said 2>&1"});
    ASSERT_TRUE(scene::appears("/tmp/hangs")) << scene::read("/tmp/said");
    ::kill(run.pid(), SIGTERM);
    EXPECT_EQ(run.wait(), -SIGTERM);
    scene::shell("kill $(cat /tmp/hangs)");
    plugins::quickenTools();
    judge(trial, {-SIGTERM, scene::read("/tmp/said"), true}, tool);
  }
}

// Two at once.

TEST_P(PluginRuns, twoAtOnceEndAsOneAfterTheOther) {
  for (const std::string tool : {"/usr/bin/ditto", "/usr/local/bin/gantrix"}) {
    plugins::quickenTools();
    plugins::slowDown(tool);
    for (const int gap : {0, 20, 100, 300}) {
      const Trial trial(GetParam());
      const turns::Two two(GetParam().line(), GetParam().line(), turns::milliseconds(gap));
      const std::string all = two.all();
      judge(trial, {0, two.first + two.second, true}, tool);
      const bool isFolder = GetParam().failures == 0;
      EXPECT_EQ(says(two.first + two.second, "Failed: 0"), isFolder) << all;
      EXPECT_TRUE(isFolder || two.oneSays("Installed: 3   Skipped: 0   Failed: 1")) << all;
      EXPECT_TRUE(isFolder || two.oneSays("Installed: 0   Skipped: 0   Failed: 4")) << all;
    }
  }
}

TEST(PluginPairs, theSecondRunWaitsAndSaysSo) {
  plugins::quickenTools();
  const Trial trial(plugins::fromFolder());
  scene::replaceTool("/usr/bin/ditto",
                     "#!/bin/sh\necho >/tmp/begun\nuntil [ -e /tmp/go ]; do sleep 0.02; done\nexec "
                     "/usr/libexec/quarn-room/quarn-ditto \"$@\"\n");
  const std::string line = plugins::fromFolder().line();
  scene::Background early({"/bin/sh", "-c", line + " >/tmp/1.out 2>&1"});
  ASSERT_TRUE(scene::appears("/tmp/begun"));
  scene::Background late({"/bin/sh", "-c", line + " >/tmp/2.out 2>/tmp/2.err"});
  for (int i = 0; i < 3000 && (!scene::exists("/tmp/2.err") || scene::read("/tmp/2.err").empty()); ++i)
    std::this_thread::sleep_for(turns::milliseconds(20));
  EXPECT_EQ(scene::read("/tmp/2.err"), turns::waiting);
  EXPECT_EQ(scene::read("/tmp/2.out"), "") << "nothing is planned before its turn";
  const auto plan =
      scene::quarn({"install", "plugins", "install", plugins::source, "--target-drive", "/Volumes/X9"});
  EXPECT_EQ(plan.status, 0) << "who only looks doesn't wait";
  EXPECT_EQ(plan.err, "");
  scene::write("/tmp/go", "");
  EXPECT_EQ(early.wait(), 0);
  EXPECT_EQ(late.wait(), 0);
  EXPECT_EQ(trial.problems({0, scene::read("/tmp/2.out"), true}), "");
}

// A drive that doesn't take it.

class PluginsOnto : public testing::Test {
 protected:
  void SetUp() override {
    if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
    plugins::quickenTools();
    plugins::makeBundle(native, "native");
  }
  static scene::Run onto(const std::string& drive) {
    return plugins::quarn({"install", plugins::system, "--target-drive", drive, "--yes"});
  }
};

TEST_F(PluginsOnto, aFullDriveLeavesThePluginInTheSystemWhole) {
  scene::plug("Tiny", "256k");
  scene::writeBytes(native + "/Contents/large", 900'000);
  const Lines whole = scene::tree(native);
  const auto run = onto("/Volumes/Tiny");
  EXPECT_EQ(run.status, 1);
  EXPECT_TRUE(says(run.out, "  [failed] A.vst3: ditto failed: ditto: ") &&
              says(run.out, ": No space left on device\n"))
      << told(run);
  EXPECT_EQ(scene::tree(native), whole);
}

TEST_F(PluginsOnto, aReadOnlyDriveChangesNothing) {
  scene::plug("Y9", "1m");
  plugins::makeBundle("/Volumes/Y9/ExternalQuarn/Plugins/VST3/A.vst3", "old");
  plugins::makeBundle(plugins::system + "/VST3/B.vst3", "native");
  ASSERT_TRUE(child::makeReadOnly("/Volumes/Y9"));
  const Lines whole = scene::tree(plugins::system), drive = scene::tree("/Volumes/Y9");
  const auto run = onto("/Volumes/Y9");
  EXPECT_EQ(run.status, 1);
  EXPECT_TRUE(
      says(run.out, "  [failed] A.vst3: rm /Volumes/Y9/ExternalQuarn/Plugins/VST3/A.vst3 failed: rm: "))
      << told(run);
  EXPECT_TRUE(says(run.out, "  [failed] B.vst3: ditto failed: ")) << told(run);
  EXPECT_EQ(scene::tree(plugins::system), whole);
  EXPECT_EQ(scene::tree("/Volumes/Y9"), drive);
}

TEST_F(PluginsOnto, aDriveThatIsBackUnderAnotherNameIsNotItsOldFolder) {
  const PocketDrive drive;
  PocketDrive::pull(true);
  PocketDrive::plugAt("/Volumes/X9 1");
  const Lines whole = scene::tree(native);
  EXPECT_TRUE(says(onto("/Volumes/X9").out, "No drive is mounted there: /Volumes/X9\n"));
  EXPECT_EQ(scene::tree(native), whole);
  EXPECT_TRUE(fs::is_empty("/Volumes/X9"));
  EXPECT_EQ(onto("/Volumes/X9 1").status, 0);
  EXPECT_EQ(scene::target(native), "/Volumes/X9 1/ExternalQuarn/Plugins/VST3/A.vst3");
  EXPECT_EQ(plugins::unsignedTree("/Volumes/X9 1/ExternalQuarn/Plugins/VST3/A.vst3"), whole);
  scene::unplug("X9 1");
  PocketDrive::plug();
}

}  // namespace
