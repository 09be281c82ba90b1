#include <bit>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <map>
#include <random>

#include "Platform/Json.h"

namespace quarn {

namespace {

std::string nested(std::size_t depth) {
  return std::string(depth, '[') + std::string(depth, ']');
}

}  // namespace

TEST(Json, whatIsNoJsonGivesNothing) {
  const std::string_view rows[] = {
      "",
      " \n\t",
      "\uFEFF",
      "01",
      "-01",
      "+1",
      ".5",
      "1.",
      "-",
      "1e",
      "1e+",
      "-.5",
      "0x10",
      "NaN",
      "Infinity",
      "-Infinity",
      "1e400",
      "tru",
      "nul",
      "True",
      "'a'",
      "{'a':1}",
      "{a:1}",
      "// c\n1",
      "/* c */1",
      "1 2",
      "[1] x",
      "{}{}",
      "[1]]",
      "[",
      "[1",
      "[1,",
      "[,]",
      "[,1]",
      "[1,,2]",
      "[1 2]",
      "[1,,]",
      "{",
      "{\"a\"",
      "{\"a\":",
      "{\"a\":}",
      "{,}",
      "{\"a\":1",
      "{\"a\":1,,}",
      "{\"a\" 1}",
      "{1:2}",
      "{\"a\":1 \"b\":2}",
      "\"a",
      "\"\\",
      "\"\\x\"",
      "\"\\u12\"",
      "\"\\u12g4\"",
      "\"\\u-123\"",
      "\"a\nb\"",
      "\"a\tb\"",
      "\"\\ud83d\"",
      "\"\\ud83dx\"",
      "\"\\ud83d\\u0041\"",
      "\"\\ude00\"",
      "\"\xFF\"",
      "\"\xC3\"",
      "\"\xED\xA0\x80\"",
      "\"\xC0\xAF\"",
      "[\x80]",
      "[1]\xFF",
      "}",
      "]",
      ":",
      ",",
      "\"a\":1",
      "[1}",
      "{\"a\":1]",
  };
  for (const auto row : rows) EXPECT_FALSE(Json::parse(row)) << row;
  EXPECT_FALSE(Json::parse(std::string_view("\"a\0b\"", 5)));
  EXPECT_FALSE(Json::parse(std::string_view("1\0", 2)));
}

TEST(Json, everyKindOfValueIsRead) {
  EXPECT_EQ(Json::parse("null"), Json());
  EXPECT_EQ(Json::parse("true"), Json(true));
  EXPECT_EQ(Json::parse("false"), Json(false));
  EXPECT_EQ(Json::parse("0"), Json(std::int64_t{0}));
  EXPECT_EQ(Json::parse("-17"), Json(std::int64_t{-17}));
  EXPECT_EQ(Json::parse("791456700.123456"), Json(791456700.123456));
  EXPECT_EQ(Json::parse("\"a\""), Json("a"));
  EXPECT_EQ(Json::parse(" [ 1 , \"b\" , null ] "),
            Json(Json::Array{Json(std::int64_t{1}), Json("b"), Json()}));
  EXPECT_EQ(Json::parse("\r\n{ \"a\" :\t{} }"), Json(Json::Object{{"a", Json(Json::Object{})}}));
}

TEST(Json, aTrailingCommaIsAccepted) {
  EXPECT_EQ(Json::parse("[1,2,]"), Json::parse("[1,2]"));
  EXPECT_EQ(Json::parse("{\"a\":1 , }"), Json::parse("{\"a\":1}"));
}

TEST(Json, ofEqualKeysTheFirstWins) {
  EXPECT_EQ(Json::parse(R"({"a":1,"a":2})")->member("a")->integer(), 1);
}

TEST(Json, aByteOrderMarkIsAccepted) {
  EXPECT_EQ(Json::parse("\uFEFF[]"), Json(Json::Array{}));
}

TEST(Json, nestingEndsAt512) {
  EXPECT_TRUE(Json::parse(nested(512)));
  EXPECT_FALSE(Json::parse(nested(513)));
  EXPECT_FALSE(Json::parse(std::string(1'000'000, '[')));
  // Side by side isn't deeper.
  EXPECT_TRUE(Json::parse("[" + nested(511) + "," + nested(511) + "]"));
}

TEST(Json, escapesAreRead) {
  EXPECT_EQ(*Json::parse(R"("\"\\\/\b\f\n\r\t")")->text(), "\"\\/\b\f\n\r\t");
  EXPECT_EQ(*Json::parse(R"("\u0041\u00e9\u20AC\ud83d\ude00")")->text(), "A\u00E9\u20AC\U0001F600");
  EXPECT_EQ(*Json::parse(R"("a\u0000b")")->text(), std::string("a\0b", 3));
  EXPECT_EQ(*Json::parse("\"\x7F\u00E9\"")->text(), "\x7F\u00E9");
}

TEST(Json, aWholeNumberIsOneHoweverItIsWritten) {
  const std::pair<const char*, std::int64_t> rows[] = {
      {"5", 5},
      {"5.0", 5},
      {"5e0", 5},
      {"0.5E+1", 5},
      {"50e-1", 5},
      {"-0", 0},
      {"9223372036854775807", std::numeric_limits<std::int64_t>::max()},
      {"-9223372036854775808", std::numeric_limits<std::int64_t>::min()},
  };
  for (const auto& [text, number] : rows) EXPECT_EQ(Json::parse(text)->integer(), number) << text;
}

TEST(Json, whatIsNoWholeNumberWithin64BitsIsNone) {
  for (const auto* text :
       {"5.5", "9223372036854775808", "-9223372036854775809", "1e19", "\"1\"", "true", "null", "[1]"}) {
    EXPECT_EQ(Json::parse(text)->integer(), std::nullopt) << text;
  }
}

TEST(Json, aMemberThatIsNullIsAbsent) {
  const auto object = *Json::parse(R"({"a":null,"b":"x","unknown":[1]})");
  EXPECT_EQ(object.member("a"), nullptr);
  EXPECT_EQ(object.member("c"), nullptr);
  EXPECT_EQ(*object.member("b"), Json("x"));
  EXPECT_EQ(Json("text").member("a"), nullptr);
}

TEST(Json, aValueOfAnotherKindIsNotConverted) {
  EXPECT_EQ(Json::parse("1")->text(), nullptr);
  EXPECT_EQ(Json::parse("{}")->array(), nullptr);
  EXPECT_EQ(Json::parse("[]")->text(), nullptr);
}

TEST(Json, theEmptyListIsFourBytes) {
  EXPECT_EQ(Json(Json::Array{}).prettyText(), "[\n\n]");
}

TEST(Json, prettyTextIsThatOfTheMac) {
  const Json record(Json::Object{
      {"sourcePath", "/Users/me/a.pkg"}, {"id", "20260131_090500"}, {"changedPaths", Json::Array{}}});
  EXPECT_EQ(record.prettyText(),
            "{\n"
            "  \"changedPaths\" : [\n"
            "\n"
            "  ],\n"
            "  \"id\" : \"20260131_090500\",\n"
            "  \"sourcePath\" : \"\\/Users\\/me\\/a.pkg\"\n"
            "}");
}

TEST(Json, eachLevelIsTwoSpacesDeeper) {
  EXPECT_EQ(Json::parse(R"([{"b":[1,true],"a":{}},null,[]])")->prettyText(),
            "[\n"
            "  {\n"
            "    \"a\" : {\n"
            "\n"
            "    },\n"
            "    \"b\" : [\n"
            "      1,\n"
            "      true\n"
            "    ]\n"
            "  },\n"
            "  null,\n"
            "  [\n"
            "\n"
            "  ]\n"
            "]");
}

TEST(Json, keysAreSortedByTheirBytes) {
  const Json object(Json::Object{{"\u00E9", true}, {"a", true}, {"Z", true}, {"a10", true}, {"a2", true}});
  EXPECT_EQ(
      object.prettyText(),
      "{\n  \"Z\" : true,\n  \"a\" : true,\n  \"a10\" : true,\n  \"a2\" : true,\n  \"\u00E9\" : true\n}");
}

TEST(Json, whatMustBeEscapedIs) {
  EXPECT_EQ(Json("\"\\/\b\f\n\r\t").prettyText(), R"("\"\\\/\b\f\n\r\t")");
  EXPECT_EQ(Json(std::string("\0\x01\x0b\x1f", 4)).prettyText(), R"("\u0000\u0001\u000b\u001f")");
  EXPECT_EQ(Json("\x7F\u0080\u00E9\u2028\U0001F600'<&").prettyText(),
            "\"\x7F\u0080\u00E9\u2028\U0001F600'<&\"");
}

TEST(Json, numbersAreWrittenInFullAndAsShortAsTheyReadBack) {
  const std::pair<Json, const char*> rows[] = {
      {Json(791456700.0), "791456700"},
      {Json(791456700.123456), "791456700.123456"},
      {Json(800000000.0), "800000000"},
      {Json(0.1), "0.1"},
      {Json(-2.5), "-2.5"},
      {Json(1.0), "1"},
      {Json(0.0), "0"},
      {Json(-0.0), "-0"},
      {Json(-3.0), "-3"},
      {Json(1.0 / 3), "0.3333333333333333"},
      {Json(0.0001), "0.0001"},
      {Json(-0.00012345678901234568), "-0.00012345678901234567"},
      {Json(0.00009), "9e-05"},
      {Json(0.000001), "1e-06"},
      {Json(4503599627370495.5), "4503599627370495.5"},
      {Json(9007199254740992.0), "9007199254740992"},
      {Json(9007199254740994.0), "9.007199254740994e+15"},
      {Json(-1e16), "-1e+16"},
      {Json(1e21), "1e+21"},
      {Json(1.5e300), "1.5e+300"},
      {Json(5e-324), "5e-324"},
      {Json(true), "true"},
      {Json(std::numeric_limits<std::int64_t>::max()), "9223372036854775807"},
      {Json(std::numeric_limits<std::int64_t>::min()), "-9223372036854775808"},
      {Json(false), "false"},
  };
  for (const auto& [value, text] : rows) {
    EXPECT_EQ(value.prettyText(), text);
    EXPECT_EQ(value.compactText(), text);
  }
}

TEST(Json, theLongestNumbersAreWrittenToo) {
  for (const double number : {std::numeric_limits<double>::denorm_min(), std::numeric_limits<double>::max(),
                              -2.2250738585072011e-308}) {
    EXPECT_EQ(std::strtod(Json(number).prettyText().c_str(), nullptr), number);
  }
}

TEST(Json, compactTextHasNoSpacesAndKeepsTheOrderOfItsKeys) {
  const Json object(Json::Object{{"b", Json::Array{}},
                                 {"a", Json::Object{}},
                                 {"/", Json::Array{Json("/x y"), Json(), Json(2.5)}},
                                 {"\u00E9\n", true}});
  EXPECT_EQ(object.compactText(), "{\"b\":[],\"a\":{},\"\\/\":[\"\\/x y\",null,2.5],\"\u00E9\\n\":true}");
  EXPECT_EQ(Json::parse(object.compactText()), object);
}

TEST(Json, aNumberIsTheSameHoweverItIsMade) {
  EXPECT_EQ(Json(5.0), Json(std::int64_t{5}));
  EXPECT_EQ(Json::parse("5.0"), Json(std::int64_t{5}));
  EXPECT_EQ(Json::parse("-0"), Json(-0.0));
  EXPECT_EQ(Json::parse("-0.0")->integer(), 0);
  EXPECT_TRUE(std::signbit(*Json::parse("-0")->number()));
  EXPECT_EQ(Json::parse("7")->number(), 7.0);
  EXPECT_EQ(Json::parse("0.5")->number(), 0.5);
  EXPECT_EQ(Json::parse("9223372036854775808")->number(), 9223372036854775808.0);
  EXPECT_EQ(Json::parse("\"7\"")->number(), std::nullopt);
}

TEST(Json, aNumberBeyondAllIsNoneAndOneTooSmallIsZero) {
  const std::string digits(1'000'000, '9');
  for (const auto& text : {std::string("1e400"), std::string("-1e400"), std::string("1e99999999999999999999"),
                           digits, "-" + digits, "[" + digits + "]"}) {
    EXPECT_FALSE(Json::parse(text)) << text.substr(0, 30);
  }
  EXPECT_EQ(Json::parse("1e-400"), Json(0.0));
  EXPECT_EQ(Json::parse("0." + digits), Json(1.0));
  EXPECT_EQ(Json::parse("0." + std::string(1'000'000, '0') + "1e1000000"), Json(0.1));
}

/// Makes values of every kind, the odd ones often.
class Dice {
 public:
  Json value(int depth = 0) {
    switch (number(depth < 4 ? 7 : 5)) {
      case 0:
        return number(2) ? Json() : Json(number(2) == 1);
      case 1:
        return Json(whole());
      case 2:
        return Json(fraction());
      case 3:
      case 4:
        return Json(text());
      case 5:
        return array(depth);
      default:
        return object(depth);
    }
  }

 private:
  std::uint64_t number(std::uint64_t end) { return engine_() % end; }
  std::int64_t whole() { return static_cast<std::int64_t>(engine_()) >> number(64); }
  /// Of any bits, so of any size; half of them with few digits.
  double fraction() {
    if (number(2)) return static_cast<double>(whole()) / 1000;
    const auto anything = std::bit_cast<double>(engine_());
    return std::isfinite(anything) ? anything : -0.0;
  }
  std::string text() {
    const std::string_view pieces[] = {"a",      "/",          "\\", "\"",    std::string_view("\0", 1),
                                       "\x1f",   "\x7f",       "\n", "u00e9", "\u00e9",
                                       "\u2028", "\U0001F600", "{",  ":",     " "};
    std::string text;
    for (auto count = number(6); count > 0; --count) text += pieces[number(std::size(pieces))];
    return text;
  }
  Json array(int depth) {
    Json::Array items;
    for (auto count = number(4); count > 0; --count) items.push_back(value(depth + 1));
    return items;
  }
  /// With sorted keys, so that both layouts have them in the same order.
  Json object(int depth) {
    std::map<std::string, Json> members;
    for (auto count = number(4); count > 0; --count) members.emplace(text(), value(depth + 1));
    return Json::Object(members.begin(), members.end());
  }

  std::mt19937_64 engine_{20260131};
};

TEST(Json, whatIsWrittenIsReadAgain) {
  Dice dice;
  for (int i = 0; i < 100'000; ++i) {
    const Json value = dice.value();
    const std::string compact = value.compactText();
    ASSERT_EQ(Json::parse(compact), value) << compact;
    ASSERT_EQ(Json::parse(value.prettyText()), value) << compact;
    ASSERT_EQ(Json::parse(compact)->compactText(), compact);
  }
}

TEST(Json, everyDamagedDocumentIsReadToAnEnd) {
  const std::string document =
      "\uFEFF" +
      Json::parse(R"({"a":[1,-2.5e3,"\u00e9\ud83d\ude00x\n",true,null,[]],"b":{"c":""}})")->prettyText();
  for (std::size_t length = 0; length < document.size(); ++length) {
    EXPECT_FALSE(Json::parse(std::string_view(document).substr(0, length))) << length;
  }
  for (std::size_t i = 0; i < document.size(); ++i) {
    for (int flip = 1; flip < 256; ++flip) {
      auto damaged = document;
      damaged[i] = static_cast<char>(damaged[i] ^ flip);
      // Whatever is still accepted must survive being written.
      const auto value = Json::parse(damaged);
      if (!value) continue;
      const auto text = value->prettyText();
      const auto again = Json::parse(text);
      ASSERT_TRUE(again) << damaged;
      EXPECT_EQ(again->prettyText(), text) << damaged;
    }
  }
}

}  // namespace quarn
