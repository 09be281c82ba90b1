#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "tests/support/linux/FailedAt.h"

/// A program that meets a fault at its n-th system call, for n = 1, 2, … until it runs through. By default a
/// sample of the calls, so that it takes seconds; all of them, several thousand runs, with
/// QUARN_CAMPAIGN=all.
namespace sweep {

/// A run at the n-th call; false once there are fewer calls.
using Run = std::function<bool(int n)>;

/// Every call, or a sample of them: `step` apart, beginning at `first`. With fewer calls than that it
/// begins sooner. The test fails if no run meets a fault.
void forEachCall(int first, int step, const Run& run);

/// What a run met, and what it left for a judge.
struct Met {
  bool wasMet = false;  ///< false: there are fewer calls
  std::string fault;    ///< for people
  int status = 0;
  std::string said;
  bool wasEnded = false;  ///< by a signal, so that its status says nothing
  bool wasBlind = false;  ///< looks failed
};

/// Counts the runs of a sweep, and what was wrong with them. Prints both when it goes.
class Tally {
 public:
  explicit Tally(std::string name) : name_(std::move(name)) {}
  ~Tally();
  Tally(const Tally&) = delete;
  Tally& operator=(const Tally&) = delete;

  /// Fails the test if a run left something wrong, or if the next one, without a fault, did.
  void judge(const std::string& fault, const std::string& said, const std::string& now,
             const std::string& next);
  int runs() const { return runs_; }

 private:
  const std::string name_;
  int runs_ = 0, wrong_ = 0;
};

/// Kills a program at its n-th changing call. Where it can't be traced, the test fails and there is nothing.
std::optional<Met> killedAt(int n, const std::vector<std::string>& command);
/// Lets its n-th call of a kind fail. The same holds for a program that doesn't come to an end.
std::optional<Met> failedAt(int n, const scene::Failure& failure, const std::vector<std::string>& command);

/// Pulls the drive out right before a program's n-th call that changes something or starts a tool, and plugs
/// it in again when the program has ended. For the time of a `PocketDrive`. Nothing if there are fewer calls.
std::optional<Met> pulledAt(int n, bool leavesItsMountPoint, const std::vector<std::string>& command);

/// Runs `failAt` at a sample of the changing calls (or all) with each of four errors, once and for good.
void forEachFailingChange(int firstStep, int step,
                          const std::function<bool(int n, const scene::Failure&)>& failAt);

}  // namespace sweep
