#include <gtest/gtest.h>

#include "Platform/FittingName.h"

namespace quarn {
namespace {

std::string repeated(const std::string& text, int count) {
  std::string whole;
  for (int each = 0; each < count; ++each) whole += text;
  return whole;
}

TEST(FittingName, isTheWholeNameAsLongAsThereIsRoom) {
  EXPECT_EQ(FittingName::of("name", " 2.app"), "name 2.app");
  EXPECT_EQ(FittingName::of("", "-2"), "-2");
  EXPECT_EQ(FittingName::of(std::string(250, 'n'), "-1234"), std::string(250, 'n') + "-1234");
}

TEST(FittingName, isShortenedBeforeItsEnd) {
  EXPECT_EQ(FittingName::of(std::string(251, 'n'), "-1234"), std::string(250, 'n') + "-1234");
  EXPECT_EQ(FittingName::of(std::string(255, 'n'), "-1234"), std::string(250, 'n') + "-1234");
}

TEST(FittingName, cutsNoCharacterInTwo) {
  for (const std::string character : {"n", "\u00E9", "\u20AC", "\U0001F3B9"}) {
    const int whole = static_cast<int>(255 / character.size());
    for (int room = 240; room < 255; ++room) {
      const std::string end(static_cast<std::size_t>(255 - room), '-');
      EXPECT_EQ(FittingName::of(repeated(character, whole), end),
                repeated(character, room / static_cast<int>(character.size())) + end);
    }
  }
}

TEST(FittingName, ofBytesThatAreNoTextIsItsEndAtLeast) {
  EXPECT_EQ(FittingName::of(std::string(255, '\x80'), "-2"), "-2");
  EXPECT_EQ(FittingName::of("name", std::string(255, '-')), std::string(255, '-'));
}

}  // namespace
}  // namespace quarn
