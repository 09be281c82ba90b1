#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <random>
#include <thread>

#include "tests/cli/Campaign.h"
#include "tests/cli/Faults.h"

/// Runs that are ended from outside at any moment: what they leave is what a kill leaves.

using campaign::Command;
using campaign::Trial;

namespace {

namespace fs = std::filesystem;
using std::chrono::microseconds;

int rounds() {
  const char* wanted = std::getenv("QUARN_CAMPAIGN");
  return wanted && std::string(wanted) == "all" ? 40 : 2;
}

/// The tools that a run started may go on to their end.
void waitForTools() {
  scene::shell("while pgrep -x 'ditto|rsync|du|find|ps|cat' >/dev/null; do sleep 0.01; done");
}

std::string line(const Command& command) {
  std::string text;
  for (const std::string& word : command.words()) text += "'" + word + "' ";
  return text;
}

class Signals : public testing::TestWithParam<Command> {
 protected:
  /// From the start of a run to well behind its end.
  microseconds anyMoment() { return microseconds(std::uniform_int_distribution<>(0, 90'000)(random_)); }

  void judge(Trial& trial, const campaign::Outcome& outcome, const std::string& what) {
    waitForTools();
    // Before the next run, which is judged by itself.
    const std::string now = trial.problems(outcome);
    EXPECT_EQ(now + trial.problemsOfNextRun(), "") << GetParam().name << ", " << what << "\n" << outcome.said;
  }

  std::mt19937 random_{20'261'122};
};

INSTANTIATE_TEST_SUITE_P(Moves, Signals, testing::ValuesIn(campaign::commands()),
                         [](const auto& instance) { return instance.param.name; });

TEST_P(Signals, endARunAtAnyMomentAndLoseNothing) {
  for (int i = 0; i < rounds(); ++i) {
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
      Trial trial(GetParam());
      scene::Background run({"/bin/sh", "-c", "exec " + line(GetParam()) + " >/tmp/said 2>&1"});
      const auto moment = anyMoment();
      std::this_thread::sleep_for(moment);
      ::kill(run.pid(), number);
      const int status = run.wait();
      EXPECT_TRUE(status == -number || status >= 0) << status;
      judge(trial, {status, scene::read("/tmp/said"), status == -number},
            "signal " + std::to_string(number) + " after " + std::to_string(moment.count()) + " us");
    }
  }
}

TEST_P(Signals, aPipeClosedAtAnyMomentLosesNothing) {
  for (int i = 0; i < rounds(); ++i) {
    Trial trial(GetParam());
    char seconds[32];
    std::snprintf(seconds, sizeof seconds, "%.6f", static_cast<double>(anyMoment().count()) / 1e6);
    scene::shell("{ " + line(GetParam()) + "2>&1; echo $? >/tmp/status; } | sleep " + seconds);
    const int status = std::stoi(scene::read("/tmp/status"));
    EXPECT_TRUE(status == 0 || status == 1 || status == 128 + SIGPIPE) << status;
    judge(trial, {status, "", true}, std::string("a pipe closed after ") + seconds + " s");
  }
}

/// The tool that copies goes on; quarn doesn't wait for it.
TEST(Signal, endsTheRunAtOnceWhileItsToolGoesOn) {
  for (const auto& [tool, command] :
       {std::pair{"/usr/bin/ditto", "quarn move one com.example.foo --yes"},
        std::pair{"/usr/bin/rsync",
                  "quarn move path --source /Users/me/Movies --destination /Volumes/X9/Movies --yes"}}) {
    scene::replaceTool(
        tool, "#!/bin/sh\n: >/tmp/begun\nwhile [ ! -e /tmp/go ]; do sleep 0.02; done\n: >/tmp/ended\n");
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
      for (const std::string path : {"/tmp/begun", "/tmp/go", "/tmp/ended", "/Volumes/X9/ExternalQuarn"})
        fs::remove_all(path);
      scene::makeApp(fault::app);
      scene::writeBytes("/Users/me/Movies/a.mov", 3000);
      const auto apps = scene::tree("/Applications"), movies = scene::tree("/Users/me/Movies");
      scene::Background run({"/bin/sh", "-c", std::string("exec ") + command + " >/dev/null 2>&1"});
      ASSERT_TRUE(scene::appears("/tmp/begun"));
      ::kill(run.pid(), number);
      EXPECT_EQ(run.wait(), -number) << command;
      EXPECT_FALSE(scene::exists("/tmp/ended"));
      scene::write("/tmp/go", "");
      ASSERT_TRUE(scene::appears("/tmp/ended"));
      EXPECT_EQ(scene::tree("/Applications"), apps);
      EXPECT_EQ(scene::tree("/Users/me/Movies"), movies);
    }
  }
}

}  // namespace
