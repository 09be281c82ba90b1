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
      // An action that takes longer than the interval makes calls fewer, not closer together.
      next = std::max(next + interval, std::chrono::steady_clock::now());
    }
  }

  bool cancelledBefore(std::chrono::steady_clock::time_point moment) {
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
