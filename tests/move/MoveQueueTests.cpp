#include "QuarnCore/move/MoveQueue.h"

namespace quarn {
namespace {

MoveQueue queueOf(std::int64_t freeBytes, const std::vector<std::int64_t>& sizes) {
  MoveQueue queue;
  queue.drive.freeBytes = freeBytes;
  for (const std::int64_t size : sizes) queue.jobs.emplace_back().bytesTotal = size;
  return queue;
}

TEST(MoveQueue, needsWhatItsJobsNeedTogether) {
  EXPECT_EQ(queueOf(0, {}).totalBytes(), 0);
  EXPECT_EQ(queueOf(0, {1, 20, 3'000'000'000'000}).totalBytes(), 3'000'000'000'021);
}

TEST(MoveQueue, fitsToTheLastByte) {
  EXPECT_TRUE(queueOf(21, {1, 20}).fits());
  EXPECT_FALSE(queueOf(20, {1, 20}).fits());
}

TEST(MoveQueue, fitsNowhereWhereTheFreeSpaceIsUnknown) {
  EXPECT_FALSE(queueOf(0, {1}).fits());
  EXPECT_TRUE(queueOf(0, {}).fits());
  EXPECT_TRUE(queueOf(0, {0}).fits());
}

}  // namespace
}  // namespace quarn
