#include <atomic>
#include <gtest/gtest.h>
#include <thread>

#include "Platform/RepeatingTimer.h"
#include "Platform/ThreadPriority.h"
#include "tests/support/linux/NiceValue.h"

namespace quarn {
namespace {

/// What a thread runs at once it has asked for a priority.
int niceValueAt(ThreadPriority priority) {
  int met = -1;
  std::thread([&] {
    setCurrentThreadPriority(priority);
    met = niceValue();
  }).join();
  return met;
}

TEST(ThreadPriority, putsTheCallingThreadBehindTheOthersAndNoOtherThread) {
  if (const int own = niceValue(); own != 0) GTEST_SKIP() << "the tests run at nice value " << own;
  EXPECT_EQ(niceValueAt(ThreadPriority::userInitiated), 0);
  EXPECT_EQ(niceValueAt(ThreadPriority::utility), 5);
  EXPECT_EQ(niceValueAt(ThreadPriority::background), 15);
  EXPECT_EQ(niceValue(), 0);
}

TEST(ThreadPriority, ofATimerIsThatOfAUtility) {
  if (const int own = niceValue(); own != 0) GTEST_SKIP() << "the tests run at nice value " << own;
  std::atomic<int> met{-1};
  RepeatingTimer timer(std::chrono::milliseconds(1), [&] { met = niceValue(); });
  for (int i = 0; i < 1000 && met < 0; ++i) std::this_thread::sleep_for(std::chrono::milliseconds(10));
  EXPECT_EQ(met, 5);
}

}  // namespace
}  // namespace quarn
