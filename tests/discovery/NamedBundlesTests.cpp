#include <random>
#include <unicode/regex.h>
#include <unicode/utext.h>

#include "QuarnCore/discovery/ProcessList.h"
#include "tests/support/Sanitized.h"
#include "tests/support/Scene.h"

namespace quarn {
namespace {

using List = std::vector<std::string>;

List named(const std::string& line) {
  List list;
  for (const std::string_view bundle : NamedBundles::inLine(line)) list.emplace_back(bundle);
  return list;
}

/// What the expression that the header tells captures, by the library whose expressions a Mac uses.
class Expression {
 public:
  Expression() {
    const icu::UnicodeString text(R"re((/[^"\n]+?\.app)(?:/Contents/|\s|$))re");
    UParseError position;
    pattern_.reset(icu::RegexPattern::compile(text, position, status_));
    matcher_.reset(pattern_->matcher(status_));
  }
  ~Expression() { utext_close(&text_); }
  Expression(const Expression&) = delete;
  Expression& operator=(const Expression&) = delete;

  List captures(const std::string& line) {
    utext_openUTF8(&text_, line.data(), static_cast<std::int64_t>(line.size()), &status_);
    matcher_->reset(&text_);
    List found;
    while (matcher_->find(status_)) {
      const auto begin = static_cast<std::size_t>(matcher_->start64(1, status_));
      found.push_back(line.substr(begin, static_cast<std::size_t>(matcher_->end64(1, status_)) - begin));
    }
    EXPECT_TRUE(U_SUCCESS(status_)) << u_errorName(status_);
    return found;
  }

 private:
  UErrorCode status_ = U_ZERO_ERROR;
  std::unique_ptr<icu::RegexPattern> pattern_;
  std::unique_ptr<icu::RegexMatcher> matcher_;
  UText text_ = UTEXT_INITIALIZER;
};

TEST(NamedBundles, areFoundInTheLinesOfTheProcessList) {
  const std::pair<const char*, List> rows[] = {
      {"helper  /Applications/Foo.app/Contents/MacOS/helper", {"/Applications/Foo.app"}},
      {"/Applications/My App.app/Contents/MacOS/x -psn", {"/Applications/My App.app"}},
      {"/Applications/A.app/Contents/Frameworks/B.app/Contents/MacOS/b", {"/Applications/A.app", "/B.app"}},
      {"x /Applications/Foo.application/y", {}},
      {"x /opt/a b /Applications/Foo.app", {"/opt/a b /Applications/Foo.app"}},
      {"x \"/Applications/Foo.app\" /Applications/Bar.app", {"/Applications/Bar.app"}},
      {"/.app /..app", {"/.app /..app"}},
      {"", {}},
  };
  for (const auto& [line, bundles] : rows) EXPECT_EQ(named(line), bundles) << line;
}

TEST(NamedBundles, areThoseOfTheExpressionInAMillionLines) {
  // The first ones again and again, so that many lines name something.
  const List common = {"/", "/a", ".app", ".app ", ".app/Contents/", "\""};
  const List parts = {"/Contents", "Contents/", "\t",      "\r",     "\v",         "\f",     "\u0085",
                      "\u00A0",    "\u1680",    "\u200A",  "\u200B", "\u180E",     "\u2028", "\u2029",
                      "\u202F",    "\u205F",    "\u3000",  "\uFEFF", ".",          "..",     ".ap",
                      "p",         "x",         "e\u0301", "\u20AC", "\U0001F600", "\x1C"};
  const int lines = isSanitized ? 50'000 : 1'000'000;  // sanitized, the same lines up to there
  std::mt19937 random(20'260'131);
  Expression expression;
  int withOne = 0;
  int withMore = 0;
  for (int number = 0; number < lines; ++number) {
    std::string line;
    for (auto count = random() % 24; count > 0; --count) {
      const List& some = random() % 2 == 0 ? common : parts;
      line += some[random() % some.size()];
    }
    const List expected = expression.captures(line);
    ASSERT_EQ(named(line), expected) << "line " << number << ": " << testing::PrintToString(line);
    withOne += expected.size() == 1;
    withMore += expected.size() > 1;
  }
  EXPECT_GT(withOne, lines / 10) << "lines that show nothing";
  EXPECT_GT(withMore, lines / 20) << "lines that show nothing";
}

TEST(NamedBundles, everyCharacterEndsABundleOrNotAsInTheExpression) {
  Expression expression;
  const UChar32 step = isSanitized ? 19 : 1;
  for (UChar32 character = 1; character <= 0x10FFFF; character += step) {
    if (character == '\n' || U_IS_SURROGATE(character)) continue;
    std::string line = "/a.app";
    icu::UnicodeString(character).toUTF8String(line);
    line += "b";
    ASSERT_EQ(named(line), expression.captures(line)) << character;
  }
}

// The expression would look at the rest of the line from each slash, and not come back for hours.
TEST(NamedBundles, areFoundInALineOfAnyLength) {
  const std::string far = "/" + std::string(2'000'000, 'x') + ".app";
  EXPECT_EQ(named(far), List{far});
  std::string slashes;
  for (int i = 0; i < 300'000; ++i) slashes += "/x.appx";
  EXPECT_EQ(named(slashes), List{});
  EXPECT_EQ(named(slashes + "\" /y.app"), List{"/y.app"});
}

}  // namespace
}  // namespace quarn
