#include <chrono>
#include <csignal>
#include <gtest/gtest.h>

#include "tests/cli/AnyMoment.h"
#include "tests/cli/UninstallCampaign.h"

/// Uninstalls that are ended from outside at any moment: what they leave is what a kill leaves.

using uninstalls::Job;
using uninstalls::Trial;

namespace {

class UninstallSignals : public testing::TestWithParam<Job> {
 protected:
  void SetUp() override { uninstalls::quickenTools(); }

  static void judge(const Trial& trial, const uninstalls::Outcome& outcome, const std::string& what) {
    const std::string now = trial.problems(outcome);
    EXPECT_EQ(now + trial.problemsOfNextRun(), "") << GetParam().name << ", " << what << "\n" << outcome.said;
  }

  /// Until well behind the end of a run.
  anymoment::Moments moments_{std::chrono::milliseconds(40)};
};

INSTANTIATE_TEST_SUITE_P(Of, UninstallSignals, testing::ValuesIn(uninstalls::jobs()),
                         [](const auto& job) { return job.param.name; });

TEST_P(UninstallSignals, endARunAtAnyMomentAndLoseNothing) {
  for (int i = 0; i < anymoment::rounds(); ++i) {
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
      const Trial trial(GetParam());
      const auto ended = anymoment::bySignal(GetParam().line(), number, moments_.next());
      judge(trial, {ended.status, ended.said, ended.wasEnded}, ended.how);
    }
  }
}

TEST_P(UninstallSignals, aPipeClosedAtAnyMomentLosesNothing) {
  for (int i = 0; i < anymoment::rounds(); ++i) {
    const Trial trial(GetParam());
    const auto ended = anymoment::byClosedPipe(GetParam().line(), moments_.next());
    judge(trial, {ended.status, ended.said, ended.wasEnded}, ended.how);
  }
}

}  // namespace
