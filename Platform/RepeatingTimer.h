#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace quarn {

/// Calls `action` on a background thread of low priority, first after one interval and then every
/// interval, until it is cancelled. A call that takes longer makes calls fewer: what it held up is not made
/// up for in a burst. `cancel` waits for a call that has already begun, so nothing is
/// called once it has returned; destroying the timer cancels it.
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
