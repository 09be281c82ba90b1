#include <chrono>
#include <csignal>
#include <filesystem>
#include <gtest/gtest.h>

#include "tests/cli/AnyMoment.h"
#include "tests/cli/Campaign.h"
#include "tests/cli/Faults.h"

/// Runs that are ended from outside at any moment: what they leave is what a kill leaves.

using campaign::Command;
using campaign::Trial;

namespace {

namespace fs = std::filesystem;

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
  void judge(Trial& trial, const campaign::Outcome& outcome, const std::string& what) {
    waitForTools();
    // Before the next run, which is judged by itself.
    const std::string now = trial.problems(outcome);
    EXPECT_EQ(now + trial.problemsOfNextRun(), "") << GetParam().name << ", " << what << "\n" << outcome.said;
  }

  /// Until well behind the end of a run.
  anymoment::Moments moments_{std::chrono::milliseconds(90)};
};

INSTANTIATE_TEST_SUITE_P(Moves, Signals, testing::ValuesIn(campaign::commands()),
                         [](const auto& instance) { return instance.param.name; });

TEST_P(Signals, endARunAtAnyMomentAndLoseNothing) {
  for (int i = 0; i < anymoment::rounds(); ++i) {
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
      Trial trial(GetParam());
      const auto ended = anymoment::bySignal(line(GetParam()), number, moments_.next());
      judge(trial, {ended.status, ended.said, ended.wasEnded}, ended.how);
    }
  }
}

TEST_P(Signals, aPipeClosedAtAnyMomentLosesNothing) {
  for (int i = 0; i < anymoment::rounds(); ++i) {
    Trial trial(GetParam());
    const auto ended = anymoment::byClosedPipe(line(GetParam()), moments_.next());
    judge(trial, {ended.status, ended.said, ended.wasEnded}, ended.how);
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
