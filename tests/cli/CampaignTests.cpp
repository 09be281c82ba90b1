#include <cerrno>
#include <cstdlib>
#include <functional>
#include <gtest/gtest.h>

#include "tests/cli/Campaign.h"
#include "tests/support/linux/FailedAt.h"
#include "tests/support/linux/KilledAt.h"

/// Each command that moves something, met by a fault at its n-th system call. By default a sample, so that it
/// takes seconds; all of them, several thousand runs, with QUARN_CAMPAIGN=all.

using campaign::Command;
using campaign::Trial;

namespace {

bool isWhole() {
  const char* wanted = std::getenv("QUARN_CAMPAIGN");
  return wanted && std::string(wanted) == "all";
}

/// A run at the n-th call; false once there are fewer calls.
using Run = std::function<bool(int n)>;

/// Every call, or a sample of them: `step` apart, beginning at `first`.
int forEachCall(int first, int step, const Run& run) {
  int runs = 0;
  for (int n = isWhole() ? 1 : first;; n += isWhole() ? 1 : step) {
    ++runs;
    if (!run(n) || testing::Test::HasFatalFailure()) return runs;
  }
}

class Campaign : public testing::TestWithParam<Command> {
 protected:
  void SetUp() override {
    if (const std::string reason = scene::whyNotTraced(); !reason.empty()) GTEST_SKIP() << reason;
  }
  void TearDown() override {
    if (runs_ > 0)
      std::printf("%s: %d runs, %d with something wrong\n", GetParam().name.c_str(), runs_, wrong_);
  }

  void judge(Trial& trial, const campaign::Outcome& outcome, const std::string& fault) {
    ++runs_;
    const std::string now = trial.problems(outcome);
    const std::string next = trial.problemsOfNextRun();
    if (now.empty() && next.empty()) return;
    ++wrong_;
    ADD_FAILURE() << GetParam().name << ", " << fault << "\n" << now << outcome.said << "then:\n" << next;
  }

  bool killAt(int n) {
    Trial trial(GetParam());
    const auto run = scene::killedAt(n, GetParam().words());
    if (!run) ADD_FAILURE() << "not traced";
    if (!run) return false;
    judge(trial, {run->status, run->said, run->wasKilled},
          "killed at changing call " + std::to_string(n) + ", " + run->call);
    return run->wasKilled;
  }

  bool failAt(int n, const scene::Failure& failure) {
    Trial trial(GetParam());
    const auto run = scene::failedAt(n, failure, GetParam().words());
    const bool isLook = failure.kind == scene::CallKind::looking;
    const std::string fault = std::string(isLook ? "looking" : "changing") + " call " + std::to_string(n) +
                              " failed " + (failure.forGood ? "for good" : "once") + " with " +
                              std::to_string(failure.error);
    if (!run) ADD_FAILURE() << "not traced, or without end: " << fault;
    if (!run) return false;
    judge(trial, {run->status, run->said, false, isLook}, fault + ", " + run->call);
    return run->hasFailed;
  }

  int runs_ = 0;
  int wrong_ = 0;
};

std::string nameOf(const testing::TestParamInfo<Command>& info) {
  return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(Moves, Campaign, testing::ValuesIn(campaign::commands()), nameOf);

TEST_P(Campaign, killedAtAChangingCallLosesNothing) {
  forEachCall(2, 13, [this](int n) { return killAt(n); });
}

TEST_P(Campaign, aChangingCallThatFailsLosesNothing) {
  int first = 0;
  for (const bool forGood : {false, true}) {
    for (const int error : {EIO, ENOSPC, EACCES, EROFS}) {
      const scene::Failure failure{scene::CallKind::changing, error, forGood};
      forEachCall(first += 10, 89, [&](int n) { return failAt(n, failure); });
    }
  }
}

TEST_P(Campaign, aLookThatFailsLosesNothing) {
  for (const bool forGood : {false, true}) {
    const scene::Failure failure{scene::CallKind::looking, EIO, forGood};
    forEachCall(forGood ? 120 : 20, 199, [&](int n) { return failAt(n, failure); });
  }
}

}  // namespace
