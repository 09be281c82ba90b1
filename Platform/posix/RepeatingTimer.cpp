#include "Platform/RepeatingTimer.h"

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <thread>

#include "Platform/ThreadPriority.h"

namespace quarn {

struct RepeatingTimer::State {
  std::mutex lock;
  std::condition_variable wake;
  bool isCancelled = false;
  std::thread thread;

  void run(std::chrono::milliseconds interval, const std::function<void()>& action) {
    setCurrentThreadPriority(ThreadPriority::utility);
    auto next = std::chrono::steady_clock::now() + interval;
    while (!cancelledBefore(next)) {
      action();
      // If the action took longer than the interval, the missed calls are dropped instead of following each
      // other at once.
      next = std::max(next + interval, std::chrono::steady_clock::now());
    }
  }

  bool cancelledBefore(std::chrono::steady_clock::time_point moment) {
    // A condition variable instead of a sleep, so that `cancel` doesn't have to wait for the rest of an
    // interval.
    std::unique_lock guard(lock);
    return wake.wait_until(guard, moment, [this] { return isCancelled; });
  }
};

RepeatingTimer::RepeatingTimer(std::chrono::milliseconds interval, std::function<void()> action)
    : state_(std::make_unique<State>()) {
  State& state = *state_;
  state.thread = std::thread([&state, interval, action = std::move(action)] { state.run(interval, action); });
}

RepeatingTimer::~RepeatingTimer() {
  cancel();
}

void RepeatingTimer::cancel() {
  {
    const std::lock_guard guard(state_->lock);
    state_->isCancelled = true;
  }
  state_->wake.notify_all();
  if (state_->thread.joinable()) state_->thread.join();
}

}  // namespace quarn
