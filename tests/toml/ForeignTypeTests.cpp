#include <filesystem>

#include "TOMLDecoder/TOMLDecoder.h"
#include "tests/toml/Documents.h"

namespace {

enum class Colour { red, green };
enum class Unreadable { one };

}  // namespace

template <>
struct toml::DecodingOf<Colour> {
  static Colour decode(const toml::Decoding& from) {
    const auto word = from.decode<std::string>();
    if (word == "red") return Colour::red;
    if (word == "green") return Colour::green;
    from.fail("'" + word + "' is not a colour");
  }
};

template <>
struct toml::DecodingOf<std::filesystem::path> {
  static std::filesystem::path decode(const toml::Decoding& from) { return from.decode<std::string>(); }
};

namespace {

template <typename T>
using Map = std::map<std::string, T>;

static_assert(toml::Decodable<Colour> && toml::Decodable<Map<std::vector<std::filesystem::path>>>);
static_assert(!toml::Decodable<Unreadable> && !toml::Decodable<std::vector<std::optional<Unreadable>>>);

struct Range {
  int low;
  int high;

  static Range decode(const toml::Decoding& from) {
    const auto keyed = from.keyed();
    const Range range{keyed.decode<int>("low"), keyed.decode<int>("high")};
    if (range.high < range.low) keyed.fail("high", "must not be below low");
    if (range.low == 13) keyed.fail("reason", "is needed for 13");
    if (range.low == 14) throw toml::TOMLError({.kind = toml::TOMLError::Reason::Kind::badKey});
    if (range.low == 15) throw std::runtime_error("something else");
    return range;
  }
};

template <typename T>
std::string allThatIsKnown(const std::string& document) {
  try {
    toml::TOMLDecoder().decode<T>(document);
  } catch (const std::exception& error) {
    return error.what();
  }
  return "no error";
}

}  // namespace

TEST(DecodingOf, aTypeOfSomebodyElseIsDecodedAloneAndWithinOthers) {
  const toml::TOMLDecoder decoder;
  EXPECT_EQ(decoder.decode<Map<Colour>>("a = 'green'").at("a"), Colour::green);
  EXPECT_EQ(decoder.decode<Map<std::vector<Colour>>>("a = ['red', 'green']").at("a"),
            (std::vector<Colour>{Colour::red, Colour::green}));
  EXPECT_EQ(decoder.decode<Map<std::optional<Colour>>>("a = 'red'").at("a"), Colour::red);
  EXPECT_EQ(decoder.decode<Map<std::filesystem::path>>("a = '/b/c'").at("a").filename(), "c");
}

TEST(DecodingOf, itsErrorsHaveLineAndPath) {
  EXPECT_EQ(allThatIsKnown<Map<std::vector<Colour>>>("\na = ['red',\n'blue']"),
            "(Line 3) 'blue' is not a colour (at a[1])");
  EXPECT_EQ(allThatIsKnown<Map<Colour>>("a = 1"), "(Line 1) Invalid string: 1 (found integer, at a)");
  EXPECT_EQ(allThatIsKnown<Map<Colour>>("a = [1]"),
            "(Line 1) Type mismatch at table key 'a': expected string, found array (at a)");
}

TEST(OwnChecks, theyHaveLineAndPath) {
  using Ranges = Map<std::vector<Range>>;
  const std::string start = "[[r]]\nlow = 1\nhigh = 2\n[[r]]\n";
  EXPECT_EQ(allThatIsKnown<Ranges>(start + "low = 4\nhigh = 3"),
            "(Line 6) must not be below low (at r[1].high)");
  // What a key that isn't there lacks, the table lacks.
  EXPECT_EQ(allThatIsKnown<Ranges>(start + "low = 13\nhigh = 13"),
            "(Line 4) is needed for 13 (at r[1].reason)");
  EXPECT_EQ(allThatIsKnown<Ranges>(start + "low = 14\nhigh = 14"), "(Line 4) Ill-formed key. (at r[1])");
  EXPECT_EQ(allThatIsKnown<Ranges>(start + "low = 15\nhigh = 15"), "something else");
}

TEST(Errors, aMissingKeyHasTheLineOfItsTableAndThePath) {
  try {
    toml::TOMLDecoder().decode<Map<std::vector<Range>>>("\n[[r]]\nlow = 1\nhigh = 2\n[[r]]\nlow = 3");
    FAIL();
  } catch (const toml::TOMLError& error) {
    EXPECT_EQ(error.lineNumber, 5u);
    EXPECT_EQ(error.path(), "r[1].high");
    EXPECT_EQ(error.text(), "No value associated with key high");
    EXPECT_STREQ(error.what(), "(Line 5) No value associated with key high (at r[1].high)");
  }
}

template <typename T>
void expectFound(const std::string& value, const std::string& found) {
  const std::string error = allThatIsKnown<Map<T>>("a = " + value);
  EXPECT_NE(error.find("found " + found), std::string::npos) << error;
  EXPECT_TRUE(error.ends_with("at a)")) << error;
}

TEST(Errors, aWrongTypeTellsWhatWasFound) {
  const std::pair<std::string, std::string> rows[] = {{"'x'", "string"},
                                                      {"12", "integer"},
                                                      {"true", "boolean"},
                                                      {"1.5", "float"},
                                                      {"1979-05-27", "local date"},
                                                      {"07:32:00", "local time"},
                                                      {"1979-05-27T07:32:00", "local date-time"},
                                                      {"1979-05-27T07:32:00Z", "offset date-time"},
                                                      {"[]", "array"},
                                                      {"{}", "table"}};
  for (const auto& [value, found] : rows) {
    if (found != "integer") expectFound<int>(value, found);
    if (found != "string") expectFound<std::string>(value, found);
    if (found != "boolean") expectFound<bool>(value, found);
  }
  EXPECT_EQ(allThatIsKnown<Map<int>>("a = 1x"),
            "(Line 1) Invalid integer: invalid digit for base 10: 'x' (at a)");
  EXPECT_EQ(allThatIsKnown<Map<bool>>("a = 'yes'"), "(Line 1) Invalid boolean: 'yes' (found string, at a)");
  EXPECT_EQ(allThatIsKnown<Map<toml::Date>>("a = true"),
            "(Line 1) Invalid date-time: No date components found. (found boolean, at a)");
  EXPECT_EQ(allThatIsKnown<Map<Map<int>>>("a = 'x'"),
            "(Line 1) Cannot get keyed decoding container -- found string (at a)");
}
