#include <gtest/gtest.h>
#include <limits>

#include "Platform/ByteCount.h"

namespace quarn {

TEST(ByteCount, bytesAreShownAsTheFinderShowsThem) {
  const std::pair<std::int64_t, const char*> rows[] = {
      {0, "Zero KB"},
      {1, "0 KB"},
      {55, "0 KB"},
      {499, "0 KB"},
      {500, "1 KB"},
      {550, "1 KB"},
      {999, "1 KB"},
      {1'000, "1 KB"},
      {1'023, "1 KB"},
      {1'536, "2 KB"},
      {4'096, "4 KB"},
      {5'500, "6 KB"},
      {11'999, "12 KB"},
      {55'000, "55 KB"},
      {550'000, "550 KB"},
      {900'000, "900 KB"},
      {999'424, "999 KB"},
      {999'499, "999 KB"},
      {999'936, "1 MB"},
      {1'048'576, "1 MB"},
      {5'500'000, "5.5 MB"},
      {12'345'678, "12.3 MB"},
      {55'000'000, "55 MB"},
      {123'456'789, "123.5 MB"},
      {550'000'000, "550 MB"},
      {999'900'000, "999.9 MB"},
      {999'949'999, "999.9 MB"},
      {999'950'000, "1 GB"},
      {999'999'999, "1 GB"},
      {1'000'000'000, "1 GB"},
      {1'234'567'898, "1.23 GB"},
      {5'500'000'000, "5.5 GB"},
      {12'345'678'987, "12.35 GB"},
      {500'107'862'016, "500.11 GB"},
      {999'999'999'999, "1,000 GB"},
      {1'000'204'886'016, "1,000.2 GB"},
      {2'000'398'934'016, "2,000.4 GB"},
      {5'500'000'000'000, "5,500 GB"},
      {55'000'000'000'000'000, "55,000,000 GB"},
      {-1'234'567'898, "-1.23 GB"},
  };
  for (const auto& [bytes, text] : rows) EXPECT_EQ(ByteCount::text(bytes), text) << bytes;
}

TEST(ByteCount, aZeroBetweenPointAndDigitStays) {
  EXPECT_EQ(ByteCount::text(1'050'000'000), "1.05 GB");
}

TEST(ByteCount, halvesAreRoundedAwayFromZero) {
  EXPECT_EQ(ByteCount::text(2'500), "3 KB");
  EXPECT_EQ(ByteCount::text(1'250'000), "1.3 MB");
  EXPECT_EQ(ByteCount::text(1'005'000'000), "1.01 GB");
  EXPECT_EQ(ByteCount::text(-1'005'000'000), "-1.01 GB");
}

TEST(ByteCount, theEndsOfTheRangeAreShownInFull) {
  EXPECT_EQ(ByteCount::text(std::numeric_limits<std::int64_t>::max()), "9,223,372,036.85 GB");
  EXPECT_EQ(ByteCount::text(std::numeric_limits<std::int64_t>::min()), "-9,223,372,036.85 GB");
}

}  // namespace quarn
