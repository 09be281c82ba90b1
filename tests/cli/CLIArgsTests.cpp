#include <gtest/gtest.h>

#include "QuarnCLI/CLIArgs.h"

namespace quarn {
namespace {

TEST(CLIArgs, aValueIsWhatFollowsTheFlag) {
  const CLIArgs args{{"--target-drive", "X9", "--yes"}};
  EXPECT_EQ(args.value("--target-drive"), "X9");
  EXPECT_TRUE(args.contains("--yes"));
}

TEST(CLIArgs, aFlagThatIsLastHasNoValue) {
  EXPECT_EQ((CLIArgs{{"a", "--target-drive"}}.value("--target-drive")), std::nullopt);
  EXPECT_EQ(CLIArgs{}.value("--target-drive"), std::nullopt);
}

TEST(CLIArgs, aSecondOccurrenceOfAFlagIsNeverRead) {
  EXPECT_EQ((CLIArgs{{"--a", "1", "--a", "2"}}.value("--a")), "1");
  EXPECT_EQ((CLIArgs{{"--a", "--a", "2"}}.value("--a")), "--a");
}

TEST(CLIArgs, aFlagsValueMayLookLikeAFlag) {
  EXPECT_EQ((CLIArgs{{"--source", "--yes"}}.value("--source")), "--yes");
}

TEST(CLIArgs, flagsAreMatchedByTheirExactTextOnly) {
  const CLIArgs args{{"--YES", "--target-drive=X9", "-y", "--ye"}};
  EXPECT_FALSE(args.contains("--yes"));
  EXPECT_EQ(args.value("--target-drive"), std::nullopt);
}

TEST(CLIArgs, thePositionalArgumentIsTheFirstWithoutTwoDashes) {
  EXPECT_EQ((CLIArgs{{"--yes", "Foo", "Bar"}}.positional()), "Foo");
  EXPECT_EQ((CLIArgs{{"-x", "Foo"}}.positional()), "-x");
  EXPECT_EQ((CLIArgs{{""}}.positional()), "");
  EXPECT_EQ((CLIArgs{{"--yes", "--"}}.positional()), std::nullopt);
}

TEST(CLIArgs, theValueOfAFlagInFrontIsTakenForThePositionalArgument) {
  EXPECT_EQ((CLIArgs{{"--target-drive", "X9", "/Applications/Foo.app"}}.positional()), "X9");
}

}  // namespace
}  // namespace quarn
