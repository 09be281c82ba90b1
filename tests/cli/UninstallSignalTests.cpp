#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>
#include <random>
#include <thread>

#include "tests/cli/UninstallCampaign.h"

/// Uninstalls that are ended from outside at any moment: what they leave is what a kill leaves.

using std::chrono::microseconds;
using uninstalls::Job;
using uninstalls::Trial;

namespace {

int rounds() {
  const char* wanted = std::getenv("QUARN_CAMPAIGN");
  return wanted && std::string(wanted) == "all" ? 40 : 2;
}

class UninstallSignals : public testing::TestWithParam<Job> {
 protected:
  void SetUp() override { uninstalls::quickenTools(); }

  /// From the start of a run to well behind its end.
  microseconds anyMoment() { return microseconds(std::uniform_int_distribution<>(0, 40'000)(random_)); }

  static void judge(const Trial& trial, const uninstalls::Outcome& outcome, const std::string& what) {
    const std::string now = trial.problems(outcome);
    EXPECT_EQ(now + trial.problemsOfNextRun(), "") << GetParam().name << ", " << what << "\n" << outcome.said;
  }

  std::mt19937 random_{20'261'122};
};

INSTANTIATE_TEST_SUITE_P(Of, UninstallSignals, testing::ValuesIn(uninstalls::jobs()),
                         [](const auto& job) { return job.param.name; });

TEST_P(UninstallSignals, endARunAtAnyMomentAndLoseNothing) {
  for (int i = 0; i < rounds(); ++i) {
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
      const Trial trial(GetParam());
      scene::Background run({"/bin/sh", "-c", "exec " + GetParam().line() + " >/tmp/said 2>&1"});
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

TEST_P(UninstallSignals, aPipeClosedAtAnyMomentLosesNothing) {
  for (int i = 0; i < rounds(); ++i) {
    const Trial trial(GetParam());
    char seconds[32];
    std::snprintf(seconds, sizeof seconds, "%.6f", static_cast<double>(anyMoment().count()) / 1e6);
    scene::shell("{ " + GetParam().line() + "2>&1; echo $? >/tmp/status; } | sleep " + seconds);
    const int status = std::stoi(scene::read("/tmp/status"));
    EXPECT_TRUE(status == 0 || status == 1 || status == 128 + SIGPIPE) << status;
    judge(trial, {status, "", true}, std::string("a pipe closed after ") + seconds + " s");
  }
}

}  // namespace
