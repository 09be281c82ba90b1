#include <gtest/gtest.h>

#include "Platform/PathText.h"

namespace quarn {

namespace {

class FixedPlaces : public Places {
 public:
  explicit FixedPlaces(std::string home = "/Users/me") : home_(home) {}
  Path home() const override { return home_; }
  std::optional<Path> home(const std::string& user) const override {
    if (user == "root") return Path("/var/root");
    return std::nullopt;
  }
  Path currentFolder() const override { return Path("/Users/me/work"); }

 private:
  Path home_;
};

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
    EXPECT_EQ(PathText::expandingTilde(FixedPlaces(), text), expanded) << text;
  }
}

TEST(PathText, aHomeAtTheRootGivesNoDoubledSlash) {
  EXPECT_EQ(PathText::expandingTilde(FixedPlaces("/"), "~/x"), "/x");
  EXPECT_EQ(PathText::expandingTilde(FixedPlaces("/"), "~/"), "/");
}

TEST(PathText, aRelativeTextBeginsAtTheCurrentFolder) {
  const std::pair<const char*, const char*> rows[] = {
      {"Foo.app", "/Users/me/work/Foo.app"}, {"../x", "/Users/me/work/../x"}, {"", "/Users/me/work"},
      {"~/x", "/Users/me/work/~/x"},         {"/a/./b/", "/a/./b"},           {"/", "/"},
  };
  for (const auto& [text, path] : rows)
    EXPECT_EQ(PathText::fileURL(FixedPlaces(), text).text(), path) << text;
}

}  // namespace quarn
