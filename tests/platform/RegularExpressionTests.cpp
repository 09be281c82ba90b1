#include <gtest/gtest.h>

#include "Platform/RegularExpression.h"

namespace quarn {

namespace {

using Captures = std::vector<std::string>;

const char* const bundlePattern = R"re((/[^"\n]+?\.app)(?:/Contents/|\s|$))re";

}  // namespace

TEST(RegularExpression, bundlesAreFoundInTheLinesOfTheProcessList) {
  const std::pair<const char*, Captures> rows[] = {
      {"helper  /Applications/Foo.app/Contents/MacOS/helper", {"/Applications/Foo.app"}},
      {"/Applications/My App.app/Contents/MacOS/x -psn", {"/Applications/My App.app"}},
      {"/Applications/A.app/Contents/Frameworks/B.app/Contents/MacOS/b", {"/Applications/A.app", "/B.app"}},
      {"x /Applications/Foo.application/y", {}},
      {"x /opt/a b /Applications/Foo.app", {"/opt/a b /Applications/Foo.app"}},
      {"/Applications/Fo /Applications/Foo.app/Contents/MacOS/Foo",
       {"/Applications/Fo /Applications/Foo.app"}},
  };
  const RegularExpression expression(bundlePattern);
  for (const auto& [line, bundles] : rows) EXPECT_EQ(expression.captures(line, 1), bundles) << line;
}

TEST(RegularExpression, everyLineOfAWholeTextIsSearched) {
  const std::string text =
      "a /Applications/A.app/Contents/MacOS/a\n"
      "b /usr/bin/b\n"
      "c /Applications/C.app\n"
      "d \"/Applications/D.app\"\n"
      "e /Applications/\u00C9 \U0001F600.app/Contents/MacOS/e\n";
  EXPECT_EQ(RegularExpression(bundlePattern).captures(text, 1),
            (Captures{"/Applications/A.app", "/Applications/C.app", "/Applications/\u00C9 \U0001F600.app"}));
}

TEST(RegularExpression, theEndIsAlsoBeforeOneLastLineEnd) {
  const RegularExpression expression("(a)$");
  EXPECT_EQ(expression.captures("a", 1).size(), 1u);
  EXPECT_EQ(expression.captures("a\n", 1).size(), 1u);
  EXPECT_EQ(expression.captures("a\r\n", 1).size(), 1u);
  EXPECT_EQ(expression.captures("a\n\n", 1).size(), 0u);
  EXPECT_EQ(expression.captures("a\nb", 1).size(), 0u);
}

TEST(RegularExpression, whiteSpaceIsThatOfUnicode) {
  EXPECT_EQ(RegularExpression("(a\\s)").captures("a\u00A0", 1), Captures{"a\u00A0"});
  EXPECT_EQ(RegularExpression("(a\\s)").captures("a\u200B", 1), Captures{});
}

TEST(RegularExpression, theGreedyPatternOfInstallScriptsTakesTheLongestBundle) {
  const std::pair<const char*, Captures> rows[] = {
      {"/Applications/Foo.app/Contents", {"/Applications/Foo.app"}},
      {"/Applications/Foo.appendix", {"/Applications/Foo.app"}},
      {"/Applications/a.app.app", {"/Applications/a.app.app"}},
      {"/Applications/My App.app", {}},
      {"/Applications/Utilities/F.app", {}},
      {"/Applications/A&amp;B.app", {"/Applications/A&amp;B.app"}},
  };
  const RegularExpression expression(R"re((/Applications/[^"<\s/]+\.app))re");
  for (const auto& [line, bundles] : rows) EXPECT_EQ(expression.captures(line, 1), bundles) << line;
}

TEST(RegularExpression, aGroupThatTookNoPartCapturesNothing) {
  EXPECT_EQ(RegularExpression("(a)|(b)").captures("ab", 2), Captures{"b"});
  EXPECT_EQ(RegularExpression("(a)").captures("a", 2), Captures{});
}

TEST(RegularExpression, aPatternThatDoesNotCompileMatchesNothing) {
  EXPECT_EQ(RegularExpression("(a").captures("(a a", 1), Captures{});
}

TEST(RegularExpression, bytesThatAreNoTextComeBackAsTheyWere) {
  EXPECT_EQ(RegularExpression("(/.*)$").captures("x /a\xFF"
                                                 "b",
                                                 1),
            Captures{"/a\xFF"
                     "b"});
}

}  // namespace quarn
