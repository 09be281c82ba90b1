#include <cerrno>
#include <cstdio>
#include <gtest/gtest.h>

#include "tests/cli/CallSweep.h"
#include "tests/cli/PluginCampaign.h"
#include "tests/support/linux/FailedAt.h"
#include "tests/support/linux/KilledAt.h"

/// `install plugins install --yes`, met by a fault at its n-th system call. By default a sample; all calls
/// with QUARN_CAMPAIGN=all.

using plugins::Job;
using plugins::Trial;

namespace {

class PluginCampaign : public testing::TestWithParam<Job> {
 protected:
  void SetUp() override {
    if (const std::string reason = scene::whyNotTraced(); !reason.empty()) GTEST_SKIP() << reason;
    plugins::quickenTools();
  }

  bool judged(const Trial& trial, const std::optional<sweep::Met>& met) {
    if (!met) return false;
    const std::string now = trial.problems({met->status, met->said, met->wasEnded, met->wasBlind});
    const std::string next = trial.problemsOfNextRun();
    tally_.judge(met->fault, met->said, now, next);
    return met->wasMet;
  }
  bool failAt(int n, const scene::Failure& failure) {
    const Trial trial(GetParam());
    return judged(trial, sweep::failedAt(n, failure, GetParam().words()));
  }

  sweep::Tally tally_{GetParam().name};
};

INSTANTIATE_TEST_SUITE_P(From, PluginCampaign, testing::Values(plugins::fromFolder(), plugins::fromSystem()),
                         [](const auto& job) { return job.param.name; });

TEST_P(PluginCampaign, withoutAFaultAllAreInstalledButThoseThatAreRefused) {
  const Trial trial(GetParam());
  const auto run = scene::quarn(GetParam().arguments());
  EXPECT_EQ(trial.problems({run.status, run.out + run.err}), "") << run.out << run.err;
  const std::string count = "   Skipped: 0   Failed: " + std::to_string(GetParam().failures) + "\n";
  EXPECT_NE(run.out.find("\nInstalled: 3" + count), std::string::npos) << run.out;
  EXPECT_EQ(run.status, GetParam().failures == 0 ? 0 : 1);
  EXPECT_EQ(trial.problemsOfNextRun(), "");
}

TEST_P(PluginCampaign, killedAtAChangingCallLosesNothing) {
  sweep::forEachCall(1, 3, [this](int n) {
    const Trial trial(GetParam());
    return judged(trial, sweep::killedAt(n, GetParam().words()));
  });
}

TEST_P(PluginCampaign, aChangingCallThatFailsLosesNothing) {
  sweep::forEachFailingChange(2, 11,
                              [this](int n, const scene::Failure& failure) { return failAt(n, failure); });
}

TEST_P(PluginCampaign, aLookThatFailsLosesNothing) {
  int first = 40;
  for (const bool forGood : {false, true}) {
    for (const int error : {EIO, EACCES}) {
      const scene::Failure failure{scene::CallKind::looking, error, forGood};
      sweep::forEachCall(first += 17, 211, [&](int n) { return failAt(n, failure); });
    }
  }
}

}  // namespace
