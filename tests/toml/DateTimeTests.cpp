#include "TOMLDecoder/DateTime.h"
#include "TOMLDecoder/TOMLDecoder.h"
#include "TOMLDecoder/internal/DateTimeScanner.h"
#include "tests/toml/Documents.h"

using toml::LocalDate;
using toml::LocalDateTime;
using toml::LocalTime;
using toml::OffsetDateTime;
using Features = toml::OffsetDateTime::Features;

namespace {

struct Row {
  std::string text;
  std::string message;
};

template <typename T>
void expectFaults(const std::vector<Row>& rows) {
  for (const Row& row : rows) {
    EXPECT_EQ(documents::errorOf([&] { T::parse(row.text); }), "Invalid date-time: " + row.message)
        << row.text;
  }
}

template <typename Make>
std::string componentFault(const Make& make) {
  return documents::errorOf(make);
}

}  // namespace

TEST(LocalDate, tellsTheRuleThatIsBroken) {
  expectFaults<LocalDate>({
      {"2023-00-01", "month must be between 01 and 12"},
      {"2023-13-01", "month must be between 01 and 12"},
      {"2023-01-00", "day must be between 01 and 31"},
      {"2023-01-32", "day must be between 01 and 31"},
      {"2023-02-29", "February only has 28 days in non-leap years"},
      {"1900-02-29", "February only has 28 days in non-leap years"},
      {"2024-02-30", "February only has 29 days in leap years"},
      {"2000-02-31", "February only has 29 days in leap years"},
      {"2023-04-31", "31 is invalid for month 4"},
      {"2023-11-31", "31 is invalid for month 11"},
      {"2023-1-01", "expected a date of the form YYYY-MM-DD"},
      {"2023-01-1", "expected a date of the form YYYY-MM-DD"},
      {"202-01-01", "expected a date of the form YYYY-MM-DD"},
      {"20230101", "expected a date of the form YYYY-MM-DD"},
      {"", "expected a date of the form YYYY-MM-DD"},
      {"2023-01-01x", "expected 'T' or 't' or space to separate date and time"},
  });
}

TEST(LocalDate, theLeapDayIsCheckedAgainstTheYear) {
  for (const char* const text : {"2024-02-29", "2000-02-29", "0000-02-29", "2023-02-28"}) {
    EXPECT_EQ(LocalDate::parse(text).text(), text);
  }
}

TEST(LocalTime, tellsTheRuleThatIsBroken) {
  expectFaults<LocalTime>({
      {"24:00:00", "hour must be between 00 and 23"},
      {"23:60:00", "minute must be between 00 and 59"},
      {"23:59:60", "second must be between 00 and 59"},
      {"23:59:59.", "decimal point must be followed by digits"},
      {"23:59", "expected valid time"},
      {"23:59:", "expected valid time"},
      {"23:5:00", "expected valid time"},
      {"23:59:5", "expected valid time"},
      {"23:59:59x", "extra character after date time"},
      {"23:59:59Z", "extra character after date time"},
      {"23:59:59.5.5", "extra character after date time"},
  });
}

TEST(OffsetDateTime, tellsTheRuleThatIsBroken) {
  const std::string start = "1979-05-27T07:32:00";
  expectFaults<OffsetDateTime>({
      {"1979-05-27x07:32:00Z", "expected 'T' or 't' or space to separate date and time"},
      {"1979-05-27T", "expected valid time"},
      {"1979-05-27Tx", "expected valid time"},
      {start + "ZZ", "extra character after date time"},
      {start + "x", "extra character after date time"},
      {start + "+07:00x", "extra character after date time"},
      {start + "+25:00", "timezone offset hour must be between 00 and 24"},
      {start + "-07:60", "timezone offset minute must be between 00 and 59"},
      {start + "+007:00", "timezone offset hour must be exactly 2 digits"},
      {start + "+0700", "timezone offset hour must be exactly 2 digits"},
      {start + "+7:00", "timezone offset must have at least 2 digits for hour"},
      {start + "-", "timezone offset must have at least 2 digits for hour"},
      {start + "+07", "timezone offset must include minutes (format: \u00B1HH:MM)"},
      {start + "+07:0", "timezone offset minute must be exactly 2 digits"},
      {start + "+07:000", "timezone offset minute must be exactly 2 digits"},
      {start + "+07:", "timezone offset minute must be exactly 2 digits"},
  });
}

TEST(DateTimes, oneKindIsNotAnother) {
  expectFaults<OffsetDateTime>({{"1979-05-27T07:32:00", "timezone parsing error"},
                                {"1979-05-27", "expected 'T' or 't' or space to separate date and time"},
                                {"07:32:00", "expected a date of the form YYYY-MM-DD"}});
  expectFaults<LocalDateTime>({{"1979-05-27T07:32:00Z", "extra character after date time"},
                               {"1979-05-27", "expected 'T' or 't' or space to separate date and time"},
                               {"07:32:00", "expected a date of the form YYYY-MM-DD"}});
  expectFaults<LocalDate>({{"1979-05-27T07:32:00", "extra character after date time"},
                           {"07:32:00", "expected a date of the form YYYY-MM-DD"}});
  expectFaults<LocalTime>(
      {{"1979-05-27", "expected valid time"}, {"1979-05-27T07:32:00", "expected valid time"}});
  try {
    LocalTime::parse("1979-05-27");
    FAIL() << "a date was read as a time";
  } catch (const toml::TOMLError& error) {
    EXPECT_EQ(error.reason.kind, toml::TOMLError::Reason::Kind::invalidDateTime3);
  }
}

TEST(DateTimes, aWrongDateFailsOnlyWhenItIsRead) {
  const toml::TOMLTable table("name = \"x\"\nday = 2023-02-29\n");
  EXPECT_EQ(table.value<std::string>("name"), "x");
  EXPECT_EQ(documents::errorOf([&] { table.value<LocalDate>("day"); }),
            "(Line 2) Invalid date-time: February only has 28 days in non-leap years");
}

TEST(DateTimes, theyAreWrittenBackAsTheyWereWritten) {
  for (const char* const text :
       {"1979-05-27T07:32:00Z", "1979-05-27t07:32:00z", "1979-05-27 07:32:00Z",
        "1979-05-27T07:32:00.25+00:00", "1979-05-27 07:32:00-07:30", "0001-01-01t00:00:00.000000001+24:59"}) {
    EXPECT_EQ(OffsetDateTime::parse(text).text(), text);
  }
  EXPECT_EQ(LocalDateTime::parse("1979-05-27 07:32:00.120").text(), "1979-05-27T07:32:00.12");
  EXPECT_EQ(LocalTime::parse("07:32:00.0000000019").text(), "07:32:00.000000001");
}

TEST(DateTimes, featuresTellHowTheTextWasWritten) {
  EXPECT_EQ(OffsetDateTime::parse("1979-05-27t07:32:00Z").features.bits,
            Features::lowercaseT | Features::uppercaseZ);
  EXPECT_EQ(OffsetDateTime::parse("1979-05-27T07:32:00z").features.bits,
            Features::uppercaseT | Features::lowercaseZ);
  EXPECT_EQ(OffsetDateTime::parse("1979-05-27 07:32:00+01:00").features.bits, 0);
  EXPECT_EQ(OffsetDateTime::parse("1979-05-27 07:32:00-01:30").offset, -90);
}

TEST(DateTimes, componentsThatMakeNoDateOrTimeAreRefused) {
  const std::string start = "Invalid date-time components: ";
  const LocalDate day(1979, 5, 27);
  const LocalTime noon(12, 0, 0);
  EXPECT_EQ(componentFault([] { LocalDate(2023, 2, 29); }),
            start + "February only has 28 days in non-leap years");
  EXPECT_EQ(componentFault([] { LocalDate(10000, 1, 1); }), start + "year must be between 0000 and 9999");
  EXPECT_EQ(componentFault([] { LocalDate(-1, 1, 1); }), start + "year must be between 0000 and 9999");
  EXPECT_EQ(componentFault([] { LocalDate(2023, 6, 31); }), start + "31 is invalid for month 6");
  EXPECT_EQ(componentFault([] { LocalTime(24, 0, 0); }), start + "hour must be between 00 and 23");
  EXPECT_EQ(componentFault([] { LocalTime(0, 0, 0, 1'000'000'000); }),
            start + "nanosecond must be between 0 and 999999999");
  for (const int offset : {25 * 60, -25 * 60}) {
    EXPECT_EQ(componentFault([&] { OffsetDateTime(day, noon, offset); }),
              start + "timezone offset hour must be between 00 and 24");
  }
  EXPECT_EQ(OffsetDateTime(day, noon, -90).text(), "1979-05-27T12:00:00-01:30");
  EXPECT_EQ(OffsetDateTime(day, noon, 25 * 60 - 1).text(), "1979-05-27T12:00:00+24:59");
  EXPECT_EQ(OffsetDateTime(day, noon, 1 - 25 * 60).text(), "1979-05-27T12:00:00-24:59");
}

TEST(OffsetDateTime, lettersThatContradictEachOtherOrTheOffsetAreRefused) {
  const LocalDate day(1979, 5, 27);
  const LocalTime noon(12, 0, 0);
  const auto fault = [&](int offset, int letters) {
    return componentFault([&] { OffsetDateTime(day, noon, offset, {static_cast<std::uint8_t>(letters)}); });
  };
  const std::string message = "Invalid date-time components: the letters contradict each other or the offset";
  EXPECT_EQ(fault(60, Features::uppercaseZ), message);
  EXPECT_EQ(fault(-1, Features::lowercaseZ), message);
  EXPECT_EQ(fault(0, Features::lowercaseZ | Features::uppercaseZ), message);
  EXPECT_EQ(fault(0, Features::lowercaseT | Features::uppercaseT), message);
  EXPECT_EQ(fault(0, Features::lowercaseT | Features::lowercaseZ), "no error");
}

TEST(Date, aFractionThatIsNearlyASecondStaysBelowIt) {
  const auto dates = toml::TOMLDecoder().decode<std::map<std::string, toml::Date>>("a = 0.9999999999");
  EXPECT_EQ(dates.at("a"), (toml::Date{0, 999'999'999}));
}
