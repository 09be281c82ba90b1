#include <cmath>

#include "TOMLDecoder/TOMLDecoder.h"
#include "tests/toml/Documents.h"

using documents::errorOf;
using toml::Date;
using toml::DateStrategy;
using toml::KeyStrategy;
using toml::TimeIntervalStrategy;
using toml::TOMLDecoder;

namespace {

/// What `value` is as a T, in a document of one key.
template <typename T>
T decoded(const TOMLDecoder& decoder, const std::string& value) {
  return decoder.decode<std::map<std::string, T>>("a = " + value).at("a");
}

template <typename T>
std::string faultOf(const TOMLDecoder& decoder, const std::string& value) {
  return errorOf([&] { decoded<T>(decoder, value); });
}

TOMLDecoder lenient() {
  TOMLDecoder decoder;
  decoder.isLenient = true;
  return decoder;
}

TOMLDecoder counting(DateStrategy strategy) {
  TOMLDecoder decoder;
  decoder.strategy.date = strategy;
  return decoder;
}

std::vector<std::string> keysBy(const KeyStrategy& strategy, const std::string& document) {
  TOMLDecoder decoder;
  decoder.strategy.key = strategy;
  std::vector<std::string> keys;
  for (const auto& [key, value] : decoder.decode<std::map<std::string, int>>(document)) keys.push_back(key);
  return keys;
}

std::string outOf(const std::string& number, const std::string& type) {
  return "(Line 1) Invalid number: " + number + " cannot be represented by type " + type +
         ". Use Int64 or lenient decoding strategy.";
}

}  // namespace

TEST(IntegerDecoding, aNumberBeyondTheTypeIsRefused) {
  const TOMLDecoder decoder;
  EXPECT_EQ(faultOf<int>(decoder, "2147483648"), outOf("2147483648", "Int"));
  EXPECT_EQ(faultOf<int>(decoder, "-2147483649"), outOf("-2147483649", "Int"));
  EXPECT_EQ(faultOf<std::int8_t>(decoder, "128"), outOf("128", "Int8"));
  EXPECT_EQ(faultOf<std::int16_t>(decoder, "40_000"), outOf("40_000", "Int16"));
  EXPECT_EQ(faultOf<std::uint8_t>(decoder, "256"), outOf("256", "UInt8"));
  EXPECT_EQ(faultOf<std::uint16_t>(decoder, "-1"), outOf("-1", "UInt16"));
  EXPECT_EQ(faultOf<unsigned>(decoder, "-1"), outOf("-1", "UInt"));
  EXPECT_EQ(faultOf<std::uint64_t>(decoder, "-1"), outOf("-1", "UInt64"));
  EXPECT_EQ(decoded<int>(decoder, "-2147483648"), INT32_MIN);
  EXPECT_EQ(decoded<std::uint8_t>(decoder, "0xff"), 255);
  EXPECT_EQ(decoded<std::int64_t>(decoder, "9223372036854775807"), INT64_MAX);
  EXPECT_EQ(decoded<long long>(decoder, "-9223372036854775808"), INT64_MIN);
}

TEST(IntegerDecoding, lenientlyTheNearestNumberIsTaken) {
  EXPECT_EQ(decoded<int>(lenient(), "2147483648"), INT32_MAX);
  EXPECT_EQ(decoded<std::int8_t>(lenient(), "-1000"), -128);
  EXPECT_EQ(decoded<unsigned>(lenient(), "-1"), 0u);
  EXPECT_EQ(decoded<int>(lenient(), "7"), 7);
}

TEST(IntegerDecoding, lenientlyAFloatWithoutAFractionIsAnInteger) {
  EXPECT_EQ(faultOf<int>({}, "2.0"), "(Line 1) Invalid integer: invalid digit for base 10: '.'");
  EXPECT_EQ(decoded<int>(lenient(), "2.0"), 2);
  EXPECT_EQ(decoded<std::int64_t>(lenient(), "1e3"), 1000);
  EXPECT_EQ(decoded<std::uint8_t>(lenient(), "1e3"), 255);
  EXPECT_EQ(faultOf<int>(lenient(), "2.5"),
            "(Line 1) Invalid number: 2.5 cannot be represented by type Int64.");
  EXPECT_EQ(faultOf<int>(lenient(), "1e19"),
            "(Line 1) Invalid number: 1e19 cannot be represented by type Int64.");
  EXPECT_EQ(faultOf<int>(lenient(), "nan"),
            "(Line 1) Invalid number: nan cannot be represented by type Int64.");
  EXPECT_EQ(faultOf<int>(lenient(), "'2'"), "(Line 1) Invalid integer: invalid digit for base 10: '''");
}

TEST(FloatDecoding, aNumberBeyondTheTypeIsRefused) {
  EXPECT_EQ(faultOf<float>({}, "1e39"),
            "(Line 1) Invalid number: 1e39 cannot be represented by type Float. "
            "Use Double or lenient decoding strategy.");
  EXPECT_EQ(decoded<float>({}, "0.1"), 0.1F);
  // The largest one and the texts that are rounded to it.
  for (const char* largest : {"3.4028234663852886e38", "3.4028235e38", "3.40282351e38"}) {
    EXPECT_EQ(decoded<float>({}, largest), std::numeric_limits<float>::max()) << largest;
  }
  EXPECT_NE(faultOf<float>({}, "3.4028236e38"), "");
  EXPECT_NE(faultOf<float>({}, "-3.4028236e38"), "");
  EXPECT_EQ(decoded<float>({}, "-inf"), -std::numeric_limits<float>::infinity());
  EXPECT_TRUE(std::isnan(decoded<float>({}, "nan")));
  EXPECT_EQ(decoded<double>({}, "1e39"), 1e39);
}

TEST(FloatDecoding, lenientlyItBecomesInfiniteAndIntegersAreFloats) {
  EXPECT_EQ(decoded<float>(lenient(), "-1e39"), -std::numeric_limits<float>::infinity());
  EXPECT_EQ(faultOf<double>({}, "3"), "(Line 1) Invalid float: 3 is an integer");
  EXPECT_EQ(decoded<double>(lenient(), "3"), 3.0);
  EXPECT_EQ(decoded<float>(lenient(), "0x10"), 16.0F);
}

TEST(KeyStrategy, snakeCaseBecomesCamelCase) {
  const std::pair<std::string, std::string> rows[] = {
      {"a", "a"},
      {"first_name", "firstName"},
      {"_first_name", "_firstName"},
      {"__a_b__", "__aB__"},
      {"already", "already"},
      {"alreadyCamel", "alreadyCamel"},
      {"A_B", "aB"},
      {"one__two", "oneTwo"},
      {"___", "___"},
      {"url_2_x", "url2X"},
      {"FIRST_NAME", "firstName"},
      {"ONE", "ONE"},
  };
  for (const auto& [key, expected] : rows) {
    EXPECT_EQ(keysBy(KeyStrategy::convertFromSnakeCase(), key + " = 1"), std::vector<std::string>{expected})
        << key;
  }
}

TEST(KeyStrategy, itAppliesToEveryKeyOfTheDocument) {
  toml::TOMLTable root(
      "top_key = 1\n[a_table]\n\"quoted_key\" = 1\ndotted_key.in_ner = {in_line = 1}\n[[an_array]]\nx_y = "
      "1\n",
      KeyStrategy::convertFromSnakeCase().transform);
  EXPECT_EQ(root.keys(), (std::vector<std::string>{"topKey", "anArray", "aTable"}));
  EXPECT_EQ(root.table("aTable").keys(), (std::vector<std::string>{"quotedKey", "dottedKey"}));
  EXPECT_EQ(root.table("aTable").table("dottedKey").table("inNer").keys(),
            std::vector<std::string>{"inLine"});
}

TEST(KeyStrategy, keysThatBecomeEqualAreOneKeyTwice) {
  EXPECT_EQ(errorOf([] { keysBy(KeyStrategy::convertFromSnakeCase(), "a_b = 1\naB = 2"); }),
            "(Line 2) Key already exists.");
}

TEST(KeyStrategy, aFunctionMayNameTheKeys) {
  const auto strategy = KeyStrategy::custom([](std::string_view key) { return "x" + std::string(key); });
  EXPECT_EQ(keysBy(strategy, "a = 1\n'' = 2"), (std::vector<std::string>{"x", "xa"}));
  EXPECT_EQ(keysBy(KeyStrategy::useOriginalKeys(), "a_b = 1"), std::vector<std::string>{"a_b"});
}

TEST(DateDecoding, aDateAndTimeIsAMoment) {
  EXPECT_EQ(decoded<Date>({}, "1970-01-01T00:00:00Z"), (Date{0, 0}));
  EXPECT_EQ(decoded<Date>({}, "2001-01-01T00:00:00.25Z"), (Date{978'307'200, 250'000'000}));
  EXPECT_EQ(decoded<Date>({}, "1970-01-01T01:00:00+01:00"), (Date{0, 0}));
  EXPECT_EQ(decoded<Date>({}, "1969-12-31T23:59:59.5-00:00"), (Date{-1, 500'000'000}));
  EXPECT_EQ(decoded<Date>({}, "2024-02-29 12:00:00"), (Date{1'709'208'000, 0}));
  EXPECT_EQ(decoded<Date>({}, "2038-01-19"), (Date{2'147'472'000, 0}));
}

TEST(DateDecoding, whatHasNoDateIsTold) {
  EXPECT_EQ(faultOf<Date>({}, "12:00:00"), "(Line 1) Invalid date-time: No date components found.");
  EXPECT_EQ(faultOf<Date>({}, "'2024-01-01'"), "(Line 1) Invalid date-time: No date components found.");
  EXPECT_EQ(faultOf<Date>({}, "2023-02-29"),
            "(Line 1) Invalid date-time: February only has 28 days in non-leap years");
}

TEST(DateDecoding, aNumberCountsSecondsFromTheStrategysYear) {
  TOMLDecoder decoder;
  EXPECT_EQ(decoded<Date>(decoder, "-5"), (Date{-5, 0}));
  EXPECT_EQ(decoded<Date>(decoder, "1.5"), (Date{1, 500'000'000}));
  EXPECT_EQ(decoded<Date>(decoder, "-1.5"), (Date{-2, 500'000'000}));
  decoder.strategy.timeInterval = TimeIntervalStrategy::since2001;
  EXPECT_EQ(decoded<Date>(decoder, "0"), (Date{978'307'200, 0}));
  EXPECT_EQ(decoded<Date>(decoder, "0.5"), (Date{978'307'200, 500'000'000}));
  for (const char* const number : {"nan", "inf", "1e19", "9223372036854775807"}) {
    EXPECT_NE(faultOf<Date>(decoder, number).find(" is no time interval"), std::string::npos) << number;
  }
}

TEST(DateDecoding, theCalendarsDifferBeforeTheReform) {
  const std::int64_t day = 86'400;
  const auto seconds = [](DateStrategy strategy, const std::string& text) {
    return decoded<Date>(counting(strategy), text).seconds;
  };
  const auto gregorian = DateStrategy::gregorianCalendar();
  const auto proleptic = DateStrategy::prolepticGregorianCalendar();
  EXPECT_EQ(seconds(gregorian, "1582-10-15"), seconds(gregorian, "1582-10-04") + day);
  EXPECT_EQ(seconds(gregorian, "1582-10-15"), seconds(proleptic, "1582-10-15"));
  EXPECT_EQ(seconds(proleptic, "1582-10-15"), seconds(proleptic, "1582-10-04") + 11 * day);
  EXPECT_EQ(seconds(gregorian, "1582-10-04"), seconds(proleptic, "1582-10-14"));
  EXPECT_EQ(seconds(proleptic, "0001-01-01"), -62'135'596'800);
  EXPECT_EQ(seconds(gregorian, "0001-01-01"), -62'135'596'800 - 2 * day);
  EXPECT_EQ(seconds(proleptic, "0000-03-01"), -62'162'035'200);
}

TEST(DateDecoding, theDaysThatTheReformLeftOutAreCountedAsJulianOnes) {
  const auto seconds = [](DateStrategy strategy, int day) {
    const std::string text = (day < 10 ? "1582-10-0" : "1582-10-") + std::to_string(day);
    return decoded<Date>(counting(strategy), text).seconds;
  };
  for (int day = 5; day < 15; ++day) {
    EXPECT_EQ(seconds(DateStrategy::gregorianCalendar(), day),
              seconds(DateStrategy::prolepticGregorianCalendar(), day + 10))
        << day;
  }
}

TEST(DateDecoding, aCalendarIsKnownByItsIdentifier) {
  const auto seconds = [](const char* identifier, const std::string& text) {
    return decoded<Date>(counting(DateStrategy::calendar(identifier)), text).seconds;
  };
  EXPECT_EQ(seconds("gregorian", "1582-10-04"), seconds("iso8601", "1582-10-14"));
  EXPECT_EQ(seconds("buddhist", "2513-01-01"), 0);
  EXPECT_EQ(seconds("roc", "0059-01-01"), 0);
  EXPECT_EQ(errorOf([] { DateStrategy::calendar("lunar"); }),
            "Invalid date-time components: the calendar 'lunar' is unknown");
}
