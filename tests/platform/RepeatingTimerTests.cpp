#include <atomic>
#include <gtest/gtest.h>
#include <thread>

#include "Platform/RepeatingTimer.h"

namespace quarn {
namespace {

using namespace std::chrono_literals;

/// Waits until it holds, or for long enough that it never will.
template <class Condition>
bool eventually(Condition condition) {
  for (int i = 0; i < 1000 && !condition(); ++i) std::this_thread::sleep_for(10ms);
  return condition();
}

TEST(RepeatingTimer, callsAgainAndAgainOnAnotherThread) {
  std::atomic<int> calls{0};
  std::atomic<bool> elsewhere{false};
  const auto here = std::this_thread::get_id();
  RepeatingTimer timer(5ms, [&] {
    elsewhere = std::this_thread::get_id() != here;
    ++calls;
  });
  EXPECT_TRUE(eventually([&] { return calls >= 3; }));
  EXPECT_TRUE(elsewhere);
}

TEST(RepeatingTimer, callsFirstAfterOneInterval) {
  const auto begin = std::chrono::steady_clock::now();
  std::atomic<std::chrono::steady_clock::duration> first{0ns};
  RepeatingTimer timer(100ms, [&] {
    if (first.load() == 0ns) first = std::chrono::steady_clock::now() - begin;
  });
  EXPECT_TRUE(eventually([&] { return first.load() != 0ns; }));
  EXPECT_GE(first.load(), 100ms);
}

TEST(RepeatingTimer, neverCatchesUpInABurstAfterALongCall) {
  // The long call covers twenty intervals. Only lower bounds are looked at: a busy machine makes calls later.
  constexpr auto interval = 20ms;
  constexpr int callsAfterwards = 10;
  std::atomic<int> calls{0};
  std::chrono::steady_clock::time_point endOfTheLongOne, last;
  RepeatingTimer timer(interval, [&] {
    if (calls == 0) {
      std::this_thread::sleep_for(20 * interval);
      endOfTheLongOne = std::chrono::steady_clock::now();
    }
    if (calls <= callsAfterwards) last = std::chrono::steady_clock::now();
    ++calls;
  });
  ASSERT_TRUE(eventually([&] { return calls > callsAfterwards; }));
  timer.cancel();
  // The first of them may come at once, and every other one an interval behind the one before.
  EXPECT_GE(last - endOfTheLongOne, (callsAfterwards - 1) * interval);
}

TEST(RepeatingTimer, callsNothingOnceCancelled) {
  std::atomic<int> calls{0};
  RepeatingTimer timer(1ms, [&] { ++calls; });
  EXPECT_TRUE(eventually([&] { return calls > 0; }));
  timer.cancel();
  const int then = calls;
  std::this_thread::sleep_for(50ms);
  EXPECT_EQ(calls, then);
  timer.cancel();
}

TEST(RepeatingTimer, cancelWaitsForACallThatHasBegun) {
  std::atomic<bool> begun{false}, ended{false};
  RepeatingTimer timer(1ms, [&] {
    begun = true;
    std::this_thread::sleep_for(200ms);
    ended = true;
  });
  EXPECT_TRUE(eventually([&] { return begun.load(); }));
  timer.cancel();
  EXPECT_TRUE(ended);
}

TEST(RepeatingTimer, cancelDoesNotWaitForTheInterval) {
  const auto begin = std::chrono::steady_clock::now();
  std::atomic<int> calls{0};
  {
    RepeatingTimer timer(1h, [&] { ++calls; });
  }
  EXPECT_LT(std::chrono::steady_clock::now() - begin, 10s);
  EXPECT_EQ(calls, 0);
}

}  // namespace
}  // namespace quarn
