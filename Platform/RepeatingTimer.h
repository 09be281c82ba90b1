#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace quarn {

/// Calls `action` on a background thread of low priority, first after one interval and then once per
/// interval, until it is cancelled. If a call takes longer than the interval, the calls that it delayed are
/// dropped and not made up for. `cancel` waits for a call that has already begun, so no call happens after it
/// returns. The destructor cancels the timer.
class RepeatingTimer {
 public:
  RepeatingTimer(std::chrono::milliseconds interval, std::function<void()> action);
  ~RepeatingTimer();
  RepeatingTimer(const RepeatingTimer&) = delete;
  RepeatingTimer& operator=(const RepeatingTimer&) = delete;
  void cancel();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace quarn
