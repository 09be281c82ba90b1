#include <cstdlib>
#include <ctime>
#include <gtest/gtest.h>

#include "Platform/DateText.h"

namespace quarn {

namespace {

using namespace std::chrono_literals;

Moment at(std::chrono::milliseconds sinceEpoch) {
  return Moment(sinceEpoch);
}

/// Sets the local time zone while it lives.
class LocalZone {
 public:
  explicit LocalZone(const char* name) {
    if (const char* zone = std::getenv("TZ")) former_ = zone;
    set(name);
  }
  ~LocalZone() { set(former_ ? former_->c_str() : nullptr); }
  LocalZone(const LocalZone&) = delete;
  LocalZone& operator=(const LocalZone&) = delete;

 private:
  static void set(const char* name) {
    name ? setenv("TZ", name, 1) : unsetenv("TZ");
    tzset();
  }
  std::optional<std::string> former_;
};

}  // namespace

TEST(DateText, aMomentIsWrittenInUTCWithTheFractionCutOff) {
  const LocalZone zone("Asia/Tokyo");
  EXPECT_EQ(DateText::iso8601(at(1769850300s)), "2026-01-31T09:05:00Z");
  EXPECT_EQ(DateText::iso8601(at(1769850300999ms)), "2026-01-31T09:05:00Z");
  EXPECT_EQ(DateText::iso8601(at(0s)), "1970-01-01T00:00:00Z");
  EXPECT_EQ(DateText::iso8601(at(-1ms)), "1969-12-31T23:59:59Z");
  EXPECT_EQ(DateText::iso8601(at(951782399s)), "2000-02-28T23:59:59Z");
  EXPECT_EQ(DateText::iso8601(at(951782400s)), "2000-02-29T00:00:00Z");
}

TEST(DateText, theTextForPeopleIsInUTCWithTheFractionCutOff) {
  const LocalZone zone("Asia/Tokyo");
  EXPECT_EQ(DateText::plain(at(1769850300s)), "2026-01-31 09:05:00 +0000");
  EXPECT_EQ(DateText::plain(at(1769850300999ms)), "2026-01-31 09:05:00 +0000");
  EXPECT_EQ(DateText::plain(at(-1ms)), "1969-12-31 23:59:59 +0000");
}

TEST(DateText, theCompactTextIsInTheLocalZone) {
  {
    const LocalZone zone("Asia/Tokyo");
    EXPECT_EQ(DateText::compactLocal(at(1769850300999ms)), "20260131_180500");
  }
  {
    const LocalZone zone("UTC");
    EXPECT_EQ(DateText::compactLocal(at(1769850300s)), "20260131_090500");
    EXPECT_EQ(DateText::compactLocal(at(-1ms)), "19691231_235959");
  }
  // The hour that is shown twice in autumn has one text for both.
  const LocalZone zone("Europe/Berlin");
  EXPECT_EQ(DateText::compactLocal(at(1761438600s)), "20251026_023000");
  EXPECT_EQ(DateText::compactLocal(at(1761442200s)), "20251026_023000");
}

TEST(DateText, whatWasWrittenIsReadBack) {
  const LocalZone zone("Asia/Tokyo");
  EXPECT_EQ(DateText::parsingISO8601("2026-01-31T09:05:00Z"), at(1769850300s));
  EXPECT_EQ(DateText::parsingISO8601("1970-01-01T00:00:00Z"), at(0s));
  EXPECT_EQ(DateText::parsingISO8601("1969-12-31T23:59:59Z"), at(-1s));
  EXPECT_EQ(DateText::parsingISO8601("2024-02-29T23:59:59Z"), at(1709251199s));
}

TEST(DateText, anyOtherFormIsRefused) {
  const std::string_view rows[] = {
      "",
      "2026-01-31T09:05:00.5Z",
      "2026-01-31T09:05:00.000Z",
      "2026-01-31T09:05:00",
      "2026-01-31T09:05:00z",
      "2026-01-31t09:05:00Z",
      "2026-01-31 09:05:00Z",
      "2026-01-31T09:05:00+00:00",
      "2026-01-31T09:05Z",
      "2026-01-31T090500Z",
      "20260131T090500Z",
      "2026-1-31T09:05:00Z",
      " 2026-01-31T09:05:00Z",
      "2026-01-31T09:05:00Z ",
      "2026-01-31T09:05: 0Z",
      "2026-01-31T09:05:+0Z",
      "-026-01-31T09:05:00Z",
      "YYYY-MM-DDThh:mm:ssZ",
  };
  for (const auto row : rows) EXPECT_FALSE(DateText::parsingISO8601(row)) << row;
}

TEST(DateText, aDayOrTimeThatDoesNotExistIsRefused) {
  const std::string_view rows[] = {
      "2026-02-29T00:00:00Z", "2026-02-30T00:00:00Z", "2026-04-31T00:00:00Z", "2026-13-01T00:00:00Z",
      "2026-00-01T00:00:00Z", "2026-01-00T00:00:00Z", "2026-01-32T00:00:00Z", "2026-01-31T24:00:00Z",
      "2026-01-31T23:60:00Z", "2026-01-31T23:59:60Z", "1900-02-29T00:00:00Z",
  };
  for (const auto row : rows) EXPECT_FALSE(DateText::parsingISO8601(row)) << row;
}

TEST(DateText, aYearBeyondTheReachOfMomentsIsNotBentIntoAnother) {
  for (const std::string text : {"0000-01-01T00:00:00Z", "0001-01-01T00:00:00Z", "9999-12-31T23:59:59Z"}) {
    const auto moment = DateText::parsingISO8601(text);
    EXPECT_EQ(moment ? DateText::iso8601(*moment) : text, text);
  }
  EXPECT_TRUE(DateText::parsingISO8601("2261-12-31T23:59:59Z"));
  EXPECT_TRUE(DateText::parsingISO8601("1700-01-01T00:00:00Z"));
}

TEST(DateText, aDashedDateIsReadInTheLocalZone) {
  {
    const LocalZone zone("Europe/Berlin");
    EXPECT_EQ(DateText::parsingLocalDashed("2026-01-31-090500"), at(1769846700s));
    EXPECT_EQ(DateText::parsingLocalDashed("2026-07-31-090500"), at(1785481500s));
  }
  const LocalZone zone("UTC");
  EXPECT_EQ(DateText::parsingLocalDashed("2026-01-31-090500"), at(1769850300s));
}

TEST(DateText, aTimeThatTheClocksSkipInSpringIsNone) {
  const LocalZone zone("Europe/Berlin");
  EXPECT_EQ(DateText::parsingLocalDashed("2026-03-29-015959"), at(1774745999s));
  EXPECT_FALSE(DateText::parsingLocalDashed("2026-03-29-020000"));
  EXPECT_FALSE(DateText::parsingLocalDashed("2026-03-29-023000"));
  EXPECT_FALSE(DateText::parsingLocalDashed("2026-03-29-025959"));
  EXPECT_EQ(DateText::parsingLocalDashed("2026-03-29-030000"), at(1774746000s));
}

TEST(DateText, anotherDashedTextIsRefused) {
  const std::string_view rows[] = {
      "",
      "com.apple.TimeMachi",
      "com.apple.TimeMachine.2026-01-31-090500.local",
      "2026-13-01-000000",
      "2026-02-30-000000",
      "2026-01-31-240000",
      "2026-01-31-236000",
      "2026-01-31-235960",
      "2026-01-31-09050",
      "2026-01-31-0905000",
      "2026-01-31 090500",
      "2026-01-31-09:0500",
  };
  for (const auto row : rows) EXPECT_FALSE(DateText::parsingLocalDashed(row)) << row;
}

TEST(DateText, secondsSince2001HaveTheirFraction) {
  EXPECT_EQ(DateText::secondsSince2001(at(1769850300s)), 791543100.0);
  EXPECT_EQ(DateText::secondsSince2001(at(1769850300125ms)), 791543100.125);
  EXPECT_EQ(DateText::secondsSince2001(at(978307200s)), 0.0);
  EXPECT_EQ(DateText::secondsSince2001(at(978307199750ms)), -0.25);
  EXPECT_EQ(DateText::secondsSince2001(at(0s)), -978307200.0);
}

TEST(DateText, secondsSince2001AreReadAndComeBackTheSame) {
  EXPECT_EQ(DateText::fromSecondsSince2001(791543100), at(1769850300s));
  EXPECT_EQ(DateText::fromSecondsSince2001(791543100.125), at(1769850300125ms));
  EXPECT_EQ(DateText::fromSecondsSince2001(-0.25), at(978307199750ms));
  for (const double number : {791543100.0, 0.5, -978307200.75, 791456700.123456, 791543100.999999}) {
    EXPECT_EQ(DateText::secondsSince2001(*DateText::fromSecondsSince2001(number)), number);
  }
}

TEST(DateText, aNumberThatNoMomentReachesIsNone) {
  const double limit = std::chrono::duration<double>(Moment::max() - at(978307200s)).count();
  for (const double number :
       {limit + 1, limit, -1e13, 1e14, 1e18, -1e300, std::numeric_limits<double>::infinity(),
        std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_EQ(DateText::fromSecondsSince2001(number), std::nullopt) << number;
  }
  EXPECT_NE(DateText::fromSecondsSince2001(limit - 3), std::nullopt);
}

TEST(DateText, secondsSince1970AreTruncated) {
  EXPECT_EQ(DateText::secondsSince1970(at(1769850300999ms)), 1769850300);
  EXPECT_EQ(DateText::secondsSince1970(at(0s)), 0);
  EXPECT_EQ(DateText::secondsSince1970(at(-1500ms)), -1);
}

}  // namespace quarn
