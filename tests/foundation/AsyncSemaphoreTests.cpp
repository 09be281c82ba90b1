#include <exception>

#include "QuarnCore/foundation/AsyncSemaphore.h"

namespace quarn {
namespace {

/// A coroutine that begins at once and frees itself at its end.
struct Task {
  struct promise_type {
    Task get_return_object() { return {}; }
    std::suspend_never initial_suspend() { return {}; }
    std::suspend_never final_suspend() noexcept { return {}; }
    void return_void() {}
    void unhandled_exception() { std::terminate(); }
  };
};

Task enter(AsyncSemaphore& semaphore, std::string name, std::vector<std::string>& log) {
  log.push_back(name + " asks");
  co_await semaphore.wait();
  log.push_back(name + " enters");
}

Task enterAndLeave(AsyncSemaphore& semaphore, std::string name, std::vector<std::string>& log) {
  co_await semaphore.wait();
  log.push_back(name);
  semaphore.signal();
}

using Log = std::vector<std::string>;

TEST(AsyncSemaphore, letsInAsManyAsAreAvailable) {
  AsyncSemaphore semaphore(2);
  Log log;
  for (const char* name : {"a", "b", "c"}) enter(semaphore, name, log);
  EXPECT_EQ(log, (Log{"a asks", "a enters", "b asks", "b enters", "c asks"}));
  semaphore.signal();
  EXPECT_EQ(log.back(), "c enters");
}

TEST(AsyncSemaphore, resumesInTheOrderOfAsking) {
  AsyncSemaphore semaphore(0);
  Log log;
  for (const char* name : {"a", "b", "c"}) enter(semaphore, name, log);
  for (int i = 0; i < 3; ++i) semaphore.signal();
  EXPECT_EQ(log, (Log{"a asks", "b asks", "c asks", "a enters", "b enters", "c enters"}));
}

TEST(AsyncSemaphore, aSignalThatResumesSomebodyLeavesNothingAvailable) {
  AsyncSemaphore semaphore(0);
  Log log;
  enter(semaphore, "a", log);
  semaphore.signal();
  enter(semaphore, "b", log);
  EXPECT_EQ(log, (Log{"a asks", "a enters", "b asks"}));
  semaphore.signal();
  EXPECT_EQ(log.back(), "b enters");
}

TEST(AsyncSemaphore, aSignalWithNobodyWaitingIsKept) {
  AsyncSemaphore semaphore(0);
  Log log;
  semaphore.signal();
  semaphore.signal();
  for (const char* name : {"a", "b", "c"}) enter(semaphore, name, log);
  EXPECT_EQ(log, (Log{"a asks", "a enters", "b asks", "b enters", "c asks"}));
  semaphore.signal();
  EXPECT_EQ(log.back(), "c enters");
}

TEST(AsyncSemaphore, whoeverSignalsOnItsWayOutLetsTheNextOneIn) {
  AsyncSemaphore semaphore(0);
  Log log;
  for (const char* name : {"a", "b", "c"}) enterAndLeave(semaphore, name, log);
  EXPECT_TRUE(log.empty());
  semaphore.signal();
  EXPECT_EQ(log, (Log{"a", "b", "c"}));
}

}  // namespace
}  // namespace quarn
