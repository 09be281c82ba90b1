#include "tests/cli/CallSweep.h"

#include <cerrno>
#include <cstdio>
#include <gtest/gtest.h>

#include "tests/cli/DriveScenes.h"
#include "tests/support/CampaignExtent.h"
#include "tests/support/linux/ChangingCalls.h"
#include "tests/support/linux/KilledAt.h"

namespace sweep {
void forEachCall(int first, int step, const Run& run) {
  int n = extent::isWhole() ? 1 : first;
  // A program with few calls would meet no fault at all.
  for (; !run(n); n /= 2) {
    if (testing::Test::HasFatalFailure()) return;
    if (n == 1) {
      ADD_FAILURE() << "no run met a fault, so nothing was tried";
      return;
    }
  }
  do {
    n += extent::step(step);
  } while (run(n) && !testing::Test::HasFatalFailure());
}

Tally::~Tally() {
  if (runs_ > 0) std::printf("%s: %d runs, %d with something wrong\n", name_.c_str(), runs_, wrong_);
}

void Tally::judge(const std::string& fault, const std::string& said, const std::string& now,
                  const std::string& next) {
  ++runs_;
  if (now.empty() && next.empty()) return;
  ++wrong_;
  ADD_FAILURE() << name_ << ", " << fault << "\n" << now << said << "then:\n" << next;
}

std::optional<Met> killedAt(int n, const std::vector<std::string>& command) {
  const auto run = scene::killedAt(n, command);
  if (!run) {
    ADD_FAILURE() << "not traced";
    return std::nullopt;
  }
  return Met{run->wasKilled, "killed at changing call " + std::to_string(n) + ", " + run->call,
             run->status,    run->said,
             run->wasKilled, false};
}

std::optional<Met> pulledAt(int n, bool leavesItsMountPoint, const std::vector<std::string>& command) {
  scene::TracedProgram program(command);
  std::string met;
  int count = 0;
  while (const auto stop = program.next()) {
    const auto call = scene::callEntered(program, *stop);
    const bool isPrint = call && call->name == "write" && scene::TracedProgram::isOutput(call->paths[0]);
    if (!call || isPrint || ++count != n) continue;
    met = call->text();
    PocketDrive::pull(leavesItsMountPoint);
  }
  if (met.empty()) return std::nullopt;
  PocketDrive::plug();
  const std::string stays = leavesItsMountPoint ? ", its folder stays, " : ", ";
  return Met{true, "pulled at call " + std::to_string(n) + stays + met, program.status().value_or(-1),
             program.said()};
}

std::optional<Met> failedAt(int n, const scene::Failure& failure, const std::vector<std::string>& command) {
  const auto run = scene::failedAt(n, failure, command);
  const bool isLook = failure.kind == scene::CallKind::looking;
  const std::string fault = std::string(isLook ? "looking" : "changing") + " call " + std::to_string(n) +
                            " failed " + (failure.forGood ? "for good" : "once") + " with " +
                            std::to_string(failure.error);
  if (!run) {
    ADD_FAILURE() << "not traced, or without end: " << fault;
    return std::nullopt;
  }
  return Met{run->hasFailed, fault + ", " + run->call, run->status, run->said, false, isLook};
}

void forEachFailingChange(int firstStep, int step,
                          const std::function<bool(int n, const scene::Failure&)>& failAt) {
  int first = 0;
  for (const bool forGood : {false, true}) {
    for (const int error : {EIO, ENOSPC, EACCES, EROFS}) {
      const scene::Failure failure{scene::CallKind::changing, error, forGood};
      forEachCall(first += firstStep, step, [&](int n) { return failAt(n, failure); });
    }
  }
}

}  // namespace sweep
