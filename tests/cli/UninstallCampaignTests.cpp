#include <cerrno>
#include <gtest/gtest.h>
#include <optional>

#include "tests/cli/CallSweep.h"
#include "tests/cli/UninstallCampaign.h"
#include "tests/support/linux/FailedAt.h"
#include "tests/support/linux/KilledAt.h"

/// `uninstall run`, met by a fault at its n-th system call. By default a sample; all calls with
/// QUARN_CAMPAIGN=all.

using uninstalls::Job;
using uninstalls::Trial;

namespace {

class UninstallCampaign : public testing::TestWithParam<Job> {
 protected:
  void SetUp() override {
    if (const std::string reason = scene::whyNotTraced(); !reason.empty()) GTEST_SKIP() << reason;
    uninstalls::quickenTools();
  }

  bool judged(const Trial& trial, const std::optional<sweep::Met>& met) {
    if (!met) return false;
    const std::string now = trial.problems({met->status, met->said, met->wasEnded});
    const std::string next = trial.problemsOfNextRun();
    tally_.judge(met->fault, met->said, now, next);
    return met->wasMet;
  }

  bool killAt(int n) {
    const Trial trial(GetParam());
    return judged(trial, sweep::killedAt(n, GetParam().words()));
  }

  bool failAt(int n, const scene::Failure& failure) {
    const Trial trial(GetParam());
    return judged(trial, sweep::failedAt(n, failure, GetParam().words()));
  }

  sweep::Tally tally_{GetParam().name};
};

INSTANTIATE_TEST_SUITE_P(Of, UninstallCampaign, testing::ValuesIn(uninstalls::jobs()),
                         [](const auto& job) { return job.param.name; });

TEST_P(UninstallCampaign, withoutAFaultEverythingGoesAndComesBack) {
  const Trial trial(GetParam());
  const auto run = scene::quarn(GetParam().arguments);
  EXPECT_EQ(trial.problems({run.status, run.out + run.err}), "") << run.out << run.err;
  EXPECT_EQ(trial.left(), 0U) << run.out << run.err;
  EXPECT_EQ(trial.problemsOfNextRun(), "");
}

TEST_P(UninstallCampaign, killedAtAChangingCallLosesNothing) {
  sweep::forEachCall(1, 11, [this](int n) { return killAt(n); });
}

TEST_P(UninstallCampaign, aChangingCallThatFailsLosesNothing) {
  sweep::forEachFailingChange(3, 61,
                              [this](int n, const scene::Failure& failure) { return failAt(n, failure); });
}

TEST_P(UninstallCampaign, aLookThatFailsLosesNothing) {
  for (const bool forGood : {false, true}) {
    const scene::Failure failure{scene::CallKind::looking, EIO, forGood};
    sweep::forEachCall(forGood ? 90 : 40, 197, [&](int n) { return failAt(n, failure); });
  }
}

}  // namespace
