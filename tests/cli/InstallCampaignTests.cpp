#include <cerrno>
#include <gtest/gtest.h>
#include <optional>

#include "tests/cli/CallSweep.h"
#include "tests/cli/InstallCampaign.h"
#include "tests/support/linux/KilledAt.h"

/// Each command that installs, finishes or undoes an installation, met by a fault at its n-th system call. By
/// default a sample; all calls with QUARN_CAMPAIGN=all.

using installs::Job;
using installs::Trial;

namespace {

class InstallCampaign : public testing::TestWithParam<Job> {
 protected:
  void SetUp() override {
    if (const std::string reason = scene::whyNotTraced(); !reason.empty()) GTEST_SKIP() << reason;
    if (const std::string reason = installs::whyNoStock(); !reason.empty()) GTEST_SKIP() << reason;
    if (GetParam().name == "image") images_.emplace();
  }

  void judge(const Trial& trial, const installs::Outcome& outcome, const std::string& fault) {
    const std::string now = trial.problems(outcome), next = trial.problemsOfNextRun();
    tally_.judge(fault, outcome.said, now, next);
  }

  bool judged(const Trial& trial, const std::optional<sweep::Met>& met) {
    if (!met) return false;
    judge(trial, {met->status, met->said, met->wasEnded}, met->fault);
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

  /// An image is attached and detached several times in each run: of these a sample takes fewer.
  static int stride() { return GetParam().name == "image" ? 4 : 1; }

  std::optional<installs::ImageServer> images_;
  sweep::Tally tally_{GetParam().name};
};

INSTANTIATE_TEST_SUITE_P(Of, InstallCampaign, testing::ValuesIn(installs::jobs()),
                         [](const auto& job) { return job.param.name; });

TEST_P(InstallCampaign, killedAtAChangingCallLosesNothing) {
  sweep::forEachCall(1, 11 * stride(), [this](int n) { return killAt(n); });
}

TEST_P(InstallCampaign, aChangingCallThatFailsLosesNothing) {
  sweep::forEachFailingChange(5, 67 * stride(),
                              [this](int n, const scene::Failure& failure) { return failAt(n, failure); });
}

TEST_P(InstallCampaign, aLookThatFailsLosesNothing) {
  for (const bool forGood : {false, true}) {
    const scene::Failure failure{scene::CallKind::looking, EIO, forGood};
    sweep::forEachCall(forGood ? 150 : 40, 397 * stride(), [&](int n) { return failAt(n, failure); });
  }
}

}  // namespace
