#include "QuarnCore/foundation/AppIdentity.h"

namespace quarn {
namespace {

std::string slug(const std::string& path, const std::string& name, std::optional<std::string> executable) {
  return Slug::derive({path, name, "com.example.id", std::move(executable)});
}

TEST(Slug, theExecutableNameComesFirst) {
  EXPECT_EQ(slug("/Applications/Foo Bar.app", "Shown", "FooBar"), "foobar");
}

TEST(Slug, withoutAnExecutableItIsTheBundlesFileName) {
  EXPECT_EQ(slug("/Applications/Foo Bar.app", "Shown", std::nullopt), "foo bar");
}

TEST(Slug, anEmptyExecutableNameCountsAsNone) {
  EXPECT_EQ(slug("/Applications/Foo Bar.app", "Shown", ""), "foo bar");
}

TEST(Slug, withoutAPathItIsTheDisplayName) {
  EXPECT_EQ(slug("", "Shown Name", std::nullopt), "shown name");
}

TEST(Slug, blanksAndPunctuationStay) {
  EXPECT_EQ(slug("/x.app", "", " A-b_C. d! "), " a-b_c. d! ");
}

TEST(Slug, onlyTheLastExtensionGoes) {
  EXPECT_EQ(slug("/Applications/Foo.beta.app", "", std::nullopt), "foo.beta");
  EXPECT_EQ(slug("/Applications/Foo 1.2 Beta", "", std::nullopt), "foo 1.2 beta");
}

TEST(Slug, lettersBeyondASCIIAreLoweredToo) {
  EXPECT_EQ(slug("/x.app", "", "ÉTUDE"), "étude");
}

}  // namespace
}  // namespace quarn
