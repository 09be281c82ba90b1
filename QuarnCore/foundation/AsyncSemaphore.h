#pragma once

#include <coroutine>
#include <cstddef>
#include <deque>

namespace quarn {

/// A counting semaphore for coroutines of one execution context, which serializes all that happens
/// here; so it takes no lock. Callers are resumed in the order in which they came.
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

  /// `co_await semaphore.wait()` goes on at once while something is available, else when it is signalled.
  Wait wait() { return Wait(*this); }

  /// Resumes the first that waits, and leaves what is available as it is; with none waiting there is
  /// one more available.
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
