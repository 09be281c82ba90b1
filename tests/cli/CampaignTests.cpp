#include <cerrno>
#include <gtest/gtest.h>

#include "tests/cli/CallSweep.h"
#include "tests/cli/Campaign.h"
#include "tests/support/linux/KilledAt.h"

/// Each command that moves something, met by a fault at its n-th system call.

using campaign::Command;
using campaign::Trial;

namespace {

class Campaign : public testing::TestWithParam<Command> {
 protected:
  void SetUp() override {
    if (const std::string reason = scene::whyNotTraced(); !reason.empty()) GTEST_SKIP() << reason;
  }

  void judge(Trial& trial, const campaign::Outcome& outcome, const std::string& fault) {
    const std::string now = trial.problems(outcome);
    const std::string next = trial.problemsOfNextRun();
    tally_.judge(fault, outcome.said, now, next);
  }

  bool judged(Trial& trial, const std::optional<sweep::Met>& met) {
    if (!met) return false;
    judge(trial, {met->status, met->said, met->wasEnded, met->wasBlind}, met->fault);
    return met->wasMet;
  }

  bool killAt(int n) {
    Trial trial(GetParam());
    return judged(trial, sweep::killedAt(n, GetParam().words()));
  }

  bool failAt(int n, const scene::Failure& failure) {
    Trial trial(GetParam());
    return judged(trial, sweep::failedAt(n, failure, GetParam().words()));
  }

  sweep::Tally tally_{GetParam().name};
};

std::string nameOf(const testing::TestParamInfo<Command>& info) {
  return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(Moves, Campaign, testing::ValuesIn(campaign::commands()), nameOf);

TEST_P(Campaign, killedAtAChangingCallLosesNothing) {
  sweep::forEachCall(2, 13, [this](int n) { return killAt(n); });
}

TEST_P(Campaign, aChangingCallThatFailsLosesNothing) {
  sweep::forEachFailingChange(10, 89,
                              [this](int n, const scene::Failure& failure) { return failAt(n, failure); });
}

TEST_P(Campaign, aLookThatFailsLosesNothing) {
  for (const bool forGood : {false, true}) {
    const scene::Failure failure{scene::CallKind::looking, EIO, forGood};
    sweep::forEachCall(forGood ? 120 : 20, 199, [&](int n) { return failAt(n, failure); });
  }
}

}  // namespace
