#include <gtest/gtest.h>

#include "Platform/Text.h"

namespace quarn {

namespace {

const std::string composed = "\u00E9";     // é
const std::string decomposed = "e\u0301";  // é
const std::string family = "\U0001F468\u200D\U0001F469\u200D\U0001F467\u200D\U0001F466";
const std::string noText = "\xFF\xFE";

int sign(int number) {
  return (number > 0) - (number < 0);
}

}  // namespace

TEST(Text, utf8IsTakenStrictly) {
  for (const std::string_view text : {"", "a", "\u00E9", "\uFEFF", "\U0010FFFF", "\x7F"}) {
    EXPECT_TRUE(Text::isUTF8(text)) << text;
  }
  EXPECT_TRUE(Text::isUTF8(std::string_view("\0", 1)));
  for (const std::string_view bytes : {"\x80", "\xC3", "\xC3(", "\xC0\xAF", "\xED\xA0\x80",
                                       "\xF4\x90\x80\x80", "\xF8\x88\x80\x80\x80", "abc\xFF", "\xE2\x82"}) {
    EXPECT_FALSE(Text::isUTF8(bytes)) << bytes;
  }
}

TEST(Text, aFileLosesItsByteOrderMark) {
  EXPECT_EQ(Text::decodingFile("\uFEFFabc"), "abc");
  EXPECT_EQ(Text::decodingFile("abc\uFEFF"), "abc\uFEFF");
  EXPECT_EQ(Text::decodingFile(""), "");
  EXPECT_EQ(Text::decodingFile(noText), std::nullopt);
}

TEST(Text, equivalentSpellingsHaveOneCanonicalForm) {
  EXPECT_EQ(Text::canonical(decomposed), composed);
  EXPECT_EQ(Text::canonical(composed), composed);
  EXPECT_EQ(Text::canonical("plain"), "plain");
  EXPECT_EQ(Text::canonical("\u212A"), "K");  // the Kelvin sign
  EXPECT_EQ(Text::canonical("\u1112\u1161\u11AB"), "\uD55C");
  EXPECT_EQ(Text::canonical("\uFB01"), "\uFB01");  // a ligature is compatible, not equivalent
  EXPECT_EQ(Text::canonical(noText + decomposed), noText + decomposed);
}

TEST(Text, equalityGoesByCanonicalEquivalence) {
  EXPECT_TRUE(Text::equal(composed, decomposed));
  EXPECT_TRUE(Text::equal("K", "\u212A"));
  EXPECT_TRUE(Text::equal("a", "a"));
  EXPECT_FALSE(Text::equal("a", "A"));
  EXPECT_FALSE(Text::equal(composed, "e"));
  EXPECT_TRUE(Text::equal(noText, noText));
  EXPECT_FALSE(Text::equal(noText, "\xFE\xFF"));
}

TEST(Text, replacesEachOccurrenceOfAWordOnce) {
  EXPECT_EQ(Text::replacing("a-b--c", "-", "+"), "a+b++c");
  EXPECT_EQ(Text::replacing("quarn.quarn", "quarn", "app"), "app.app");
  EXPECT_EQ(Text::replacing("aabb", "ab", ""), "ab") << "what comes together stays";
  EXPECT_EQ(Text::replacing("", "x", "y"), "");
  EXPECT_EQ(Text::replacing("abc", "abcd", "y"), "abc");
}

TEST(Text, prefixesAndSuffixesGoByCanonicalEquivalence) {
  EXPECT_TRUE(Text::hasPrefix("/Caf" + decomposed + "/x", "/Caf" + composed));
  EXPECT_TRUE(Text::hasPrefix("abc", "ab"));
  EXPECT_TRUE(Text::hasPrefix("abc", ""));
  EXPECT_FALSE(Text::hasPrefix("abc", "AB"));
  EXPECT_FALSE(Text::hasPrefix("ab", "abc"));
  EXPECT_FALSE(Text::hasPrefix(decomposed + "x", "e"));
  EXPECT_TRUE(Text::hasSuffix("x" + composed, decomposed));
  EXPECT_TRUE(Text::hasSuffix("a.app", ".app"));
  EXPECT_FALSE(Text::hasSuffix("a.APP", ".app"));
  EXPECT_FALSE(Text::hasSuffix(decomposed, "\u0301"));
}

TEST(Text, plainOrderIsThatOfCodePointsInTheCanonicalForm) {
  EXPECT_TRUE(Text::precedes("Z", "a"));
  EXPECT_TRUE(Text::precedes("a", "ab"));
  EXPECT_TRUE(Text::precedes("App 10", "App 2"));
  EXPECT_TRUE(Text::precedes("z", composed));
  EXPECT_TRUE(Text::precedes("z", decomposed));
  EXPECT_FALSE(Text::precedes(composed, decomposed));
  EXPECT_FALSE(Text::precedes(decomposed, composed));
  EXPECT_TRUE(Text::precedes("\uFFFD", "\U00010000"));
  EXPECT_FALSE(Text::precedes("a", "a"));
}

TEST(Text, listsAreSortedAsPeopleDo) {
  struct Row {
    std::string a, b;
    int order;
  };
  const Row rows[] = {
      {"apple", "Apple", 0},
      {"App 10", "App 2", -1},
      {"eclair", "\u00C9clair", -1},
      {"\u00C9clair", "eclairs", -1},
      {"\u00E9clair", "\u00C9clair", 0},
      {"_x", "1x", -1},
      {"1x", "ax", -1},
      {"_x", "ax", -1},
      {"a b", "ab", -1},
      {"a-b", "ab", -1},
      {"B", "a", 1},
      {composed, decomposed, 0},
      {"a\u0323\u0307", "a\u0307\u0323", 0},
      {"", "a", -1},
      {"", "", 0},
  };
  for (const auto& [a, b, order] : rows) {
    EXPECT_EQ(sign(Text::localizedCaseInsensitiveCompare(a, b)), order) << a << " | " << b;
    EXPECT_EQ(sign(Text::localizedCaseInsensitiveCompare(b, a)), -order) << b << " | " << a;
  }
}

TEST(Text, aSearchIgnoresLetterCaseAndMindsAccents) {
  EXPECT_TRUE(Text::localizedCaseInsensitiveContains("My Foo App", "foo"));
  EXPECT_TRUE(Text::localizedCaseInsensitiveContains("my foo app", "FOO"));
  EXPECT_FALSE(Text::localizedCaseInsensitiveContains("Foo", "bar"));
  EXPECT_FALSE(Text::localizedCaseInsensitiveContains("Foo", ""));
  EXPECT_FALSE(Text::localizedCaseInsensitiveContains("", ""));
  EXPECT_TRUE(Text::localizedCaseInsensitiveContains("Caf\u00C9", "f" + decomposed));
  EXPECT_TRUE(Text::localizedCaseInsensitiveContains("CAFE\u0301 x", "\u00E9 X"));
  EXPECT_FALSE(Text::localizedCaseInsensitiveContains("Caf\u00C9", "cafe"));
  EXPECT_FALSE(Text::localizedCaseInsensitiveContains("Cafe", "caf\u00E9"));
  EXPECT_TRUE(Text::localizedCaseInsensitiveContains("Stra\u00DFe", "STRASSE"));
  EXPECT_TRUE(Text::localizedCaseInsensitiveContains("\u0414\u041E\u041C", "\u0434\u043E\u043C"));
  EXPECT_TRUE(Text::localizedCaseInsensitiveContains("A" + noText, "a\xFF"));
}

TEST(Text, lowerCaseKnowsNoLocaleAndNoContext) {
  EXPECT_EQ(Text::lowercased("FooBAR 1@[`{"), "foobar 1@[`{");
  EXPECT_EQ(Text::lowercased("\u00C9T\u00C9"), "\u00E9t\u00E9");
  EXPECT_EQ(Text::lowercased("\u0130"), "i\u0307");
  EXPECT_EQ(Text::lowercased("\u039F\u03A3"), "\u03BF\u03C3");
  EXPECT_EQ(Text::lowercased("\U00010400"), "\U00010428");
  EXPECT_EQ(Text::lowercased("A" + noText), "a" + noText);
}

TEST(Text, upperCaseKnowsNoLocale) {
  EXPECT_EQ(Text::uppercased("FooBAR az1@[`{"), "FOOBAR AZ1@[`{");
  EXPECT_EQ(Text::uppercased("\u00E9t\u00E9"), "\u00C9T\u00C9");
  EXPECT_EQ(Text::uppercased(decomposed), "E\u0301");
  EXPECT_EQ(Text::uppercased("i\u00E9"), "I\u00C9");
  EXPECT_EQ(Text::uppercased("\u0131"), "I");
  EXPECT_EQ(Text::uppercased("\u00DF"), "SS");
  EXPECT_EQ(Text::uppercased("\uFB01"), "FI");
  EXPECT_EQ(Text::uppercased("\u01C6"), "\u01C4");
  EXPECT_EQ(Text::uppercased("\u03C2\u03C3"), "\u03A3\u03A3");
  EXPECT_EQ(Text::uppercased("\U00010428"), "\U00010400");
  EXPECT_EQ(Text::uppercased("\u65E5"), "\u65E5");
  EXPECT_EQ(Text::uppercased("a" + noText), "A" + noText);
  EXPECT_EQ(Text::uppercased(""), "");
}

TEST(Text, spacesAndTabsOfEveryKindAreTrimmed) {
  const char* spaces[] = {"\t",     " ",      "\u00A0", "\u1680", "\u2000", "\u2001", "\u2002",
                          "\u2003", "\u2004", "\u2005", "\u2006", "\u2007", "\u2008", "\u2009",
                          "\u200A", "\u200B", "\u202F", "\u205F", "\u3000"};
  for (const std::string space : spaces) {
    EXPECT_EQ(Text::trimmingWhitespace(space + "a" + space + "b" + space), "a" + space + "b") << space;
    EXPECT_EQ(Text::trimmingWhitespaceAndNewlines(space + "a" + space), "a") << space;
  }
}

TEST(Text, lineEndsAreTrimmedOnlyWhenAskedFor) {
  for (const std::string newline : {"\n", "\v", "\f", "\r", "\r\n", "\u0085", "\u2028", "\u2029"}) {
    EXPECT_EQ(Text::trimmingWhitespace(newline + "a" + newline), newline + "a" + newline);
    EXPECT_EQ(Text::trimmingWhitespaceAndNewlines(newline + " a" + newline + " "), "a");
  }
}

TEST(Text, otherCharactersStay) {
  for (const std::string other : {"\uFEFF", "\u200C", "\u180E", "\x1F", "\x08", "\xA0"}) {
    EXPECT_EQ(Text::trimmingWhitespaceAndNewlines(other + " a " + other), other + " a " + other);
  }
  EXPECT_EQ(Text::trimmingWhitespace(" \t "), "");
  EXPECT_EQ(Text::trimmingWhitespace("\u3000\u00A0"), "");
  EXPECT_EQ(Text::trimmingWhitespace(""), "");
}

TEST(Text, aPrefixCountsCharactersAsPeopleDo) {
  const std::string letters(79, 'a');
  EXPECT_EQ(Text::prefix(letters + family + "x", 80), letters + family);
  EXPECT_EQ(Text::prefix(letters + decomposed + "x", 80), letters + decomposed);
  EXPECT_EQ(Text::characterCount(letters + family + "x"), letters.size() + 2);
  EXPECT_EQ(Text::characterCount(letters + decomposed + "x"), letters.size() + 2);
  EXPECT_EQ(Text::characterCount("a\r\nb"), 3u);
  EXPECT_EQ(Text::characterCount(""), 0u);
  EXPECT_EQ(Text::prefix("abc", 2), "ab");
  EXPECT_EQ(Text::prefix("abc", 0), "");
  EXPECT_EQ(Text::prefix("abc", 3), "abc");
  EXPECT_EQ(Text::prefix("abc", 80), "abc");
  EXPECT_EQ(Text::prefix("", 3), "");
  // A byte-order mark is a character like any other, also at the beginning.
  EXPECT_EQ(Text::prefix("\uFEFFabc", 3), "\uFEFFab");
  EXPECT_EQ(Text::prefix("\uFEFF\uFEFF\u00E9a", 3), "\uFEFF\uFEFF\u00E9");
  EXPECT_EQ(Text::prefix(composed + "b", 0), "");
  EXPECT_EQ(Text::prefix(composed + "b", 1), composed);
  EXPECT_EQ(Text::prefix(composed + "b", 80), composed + "b");
}

TEST(Text, carriageReturnAndLineFeedAreOneCharacter) {
  EXPECT_EQ(Text::prefix("a\r\nb", 2), "a\r\n");
  EXPECT_EQ(Text::prefix("\r\r\n\nb", 2), "\r\r\n");
  EXPECT_EQ(Text::prefix(composed + "\r\nb", 2), composed + "\r\n");
}

TEST(Text, linesAreWhatIsBetweenLineFeeds) {
  using Lines = std::vector<std::string_view>;
  EXPECT_EQ(Text::nonEmptyLines("a\n\nb c\n"), (Lines{"a", "b c"}));
  EXPECT_EQ(Text::nonEmptyLines("\n a"), (Lines{" a"}));
  EXPECT_EQ(Text::nonEmptyLines(""), Lines{});
  EXPECT_EQ(Text::nonEmptyLines("\n\n"), Lines{});
  EXPECT_EQ(Text::nonEmptyLines("a\r\nb"), (Lines{"a\r", "b"}));
}

TEST(Text, linesOfAnyEndAreWhatIsBetweenLineEndsOfEveryKind) {
  using Lines = std::vector<std::string_view>;
  for (const std::string end : {"\n", "\v", "\f", "\r", "\r\n", "\u0085", "\u2028", "\u2029"}) {
    EXPECT_EQ(Text::nonEmptyLinesOfAnyEnd("a" + end + end + " b\u00E9" + end), (Lines{"a", " b\u00E9"}))
        << end;
    EXPECT_EQ(Text::nonEmptyLinesOfAnyEnd(end + "a" + end + "b"), (Lines{"a", "b"})) << end;
  }
  EXPECT_EQ(Text::nonEmptyLinesOfAnyEnd("a\tb\u00A0c\u200Bd"), (Lines{"a\tb\u00A0c\u200Bd"}));
  EXPECT_EQ(Text::nonEmptyLinesOfAnyEnd(""), Lines{});
}

}  // namespace quarn
