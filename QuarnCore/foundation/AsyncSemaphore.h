#pragma once

#include <coroutine>
#include <cstddef>
#include <deque>

namespace quarn {

/// A counting semaphore for coroutines of a single execution context. Everything here runs there one after
/// another, so it needs no lock. Waiting coroutines are resumed in the order in which they arrived.
class AsyncSemaphore {
 public:
  explicit AsyncSemaphore(std::ptrdiff_t value) : available_(value) {}

  class Wait {
   public:
    explicit Wait(AsyncSemaphore& semaphore) : semaphore_(semaphore) {}
    bool await_ready() { return semaphore_.take(); }
    void await_suspend(std::coroutine_handle<> caller) { semaphore_.waiters_.push_back(caller); }
    void await_resume() {}

   private:
    AsyncSemaphore& semaphore_;
  };

  /// `co_await semaphore.wait()` continues at once if the count is above 0, and otherwise when it is
  /// signalled.
  Wait wait() { return Wait(*this); }

  /// Resumes the first waiting coroutine without changing the count. If none waits, adds one to the count.
  void signal() {
    if (waiters_.empty()) {
      ++available_;
      return;
    }
    const auto first = waiters_.front();
    waiters_.pop_front();
    first.resume();
  }

 private:
  bool take() {
    if (available_ <= 0) return false;
    --available_;
    return true;
  }

  std::ptrdiff_t available_;
  std::deque<std::coroutine_handle<>> waiters_;
};

}  // namespace quarn
