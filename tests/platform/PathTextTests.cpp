#include <gtest/gtest.h>

#include "Platform/PathText.h"
#include "tests/support/Doubles.h"

namespace quarn {

namespace {

doubles::FakePlaces places(const char* home = "/Users/me") {
  doubles::FakePlaces fixed{Path(home)};
  fixed.homesOfOthers["root"] = Path("/var/root");
  fixed.current = Path("/Users/me/work");
  return fixed;
}

}  // namespace

TEST(PathText, aLeadingTildeBecomesTheHome) {
  const std::pair<const char*, const char*> rows[] = {
      {"~", "/Users/me"},
      {"~/", "/Users/me"},
      {"~/x", "/Users/me/x"},
      {"~/x/", "/Users/me/x/"},
      {"~root", "/var/root"},
      {"~root/", "/var/root"},
      {"~root/x", "/var/root/x"},
      {"~nobody-here/x", "~nobody-here/x"},
      {"/Volumes/X9/", "/Volumes/X9/"},
      {"/a/~/b", "/a/~/b"},
      {"x~", "x~"},
      {"", ""},
  };
  for (const auto& [text, expanded] : rows) {
    EXPECT_EQ(PathText::expandingTilde(places(), text), expanded) << text;
  }
}

TEST(PathText, aHomeAtTheRootGivesNoDoubledSlash) {
  EXPECT_EQ(PathText::expandingTilde(places("/"), "~/x"), "/x");
  EXPECT_EQ(PathText::expandingTilde(places("/"), "~/"), "/");
}

TEST(PathText, aRelativeTextBeginsAtTheCurrentFolder) {
  const std::pair<const char*, const char*> rows[] = {
      {"Foo.app", "/Users/me/work/Foo.app"}, {"../x", "/Users/me/work/../x"}, {"", "/Users/me/work"},
      {"~/x", "/Users/me/work/~/x"},         {"/a/./b/", "/a/./b"},           {"/", "/"},
  };
  for (const auto& [text, path] : rows) EXPECT_EQ(PathText::fileURL(places(), text).text(), path) << text;
}

TEST(PathText, aRelativeTextOfALinkBeginsAtTheFolderOfTheLink) {
  const std::pair<const char*, const char*> rows[] = {
      {"Foo.app", "/Applications/Foo.app"},
      {"../x/./y", "/Applications/../x/./y"},
      {"", "/Applications"},
      {"/a/../b/", "/a/../b"},
      {"~/x", "/Applications/~/x"},
      {"/", "/"},
  };
  const Path link("/Applications/Link.app");
  for (const auto& [text, path] : rows) EXPECT_EQ(PathText::linkTarget(link, text).text(), path) << text;
}

}  // namespace quarn
