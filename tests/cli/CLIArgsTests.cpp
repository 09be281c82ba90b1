#include <gtest/gtest.h>
#include <stdexcept>

#include "QuarnCLI/Invocation.h"

namespace quarn {
namespace {

constexpr Flag yes{.name = "--yes", .meaning = ""};
constexpr Flag drive{.name = "--drive", .kind = ValueKind::path, .valueName = "path", .meaning = ""};
constexpr Flag source{.name = "--source", .kind = ValueKind::path, .valueName = "path", .meaning = ""};
constexpr Flag flags[] = {yes, drive, source};
constexpr LookingHandler handler = [](const ReadOnlyInvocation&) { return ExitStatus::success; };
constexpr Command row{
    .words = "test", .purpose = "", .operand = Operand{.name = "<item>"}, .flags = flags, .handler = handler};

CLIArgs args(const std::vector<std::string>& values) {
  return {values, row};
}

TEST(CLIArgs, aValueIsWhatFollowsTheFlag) {
  const CLIArgs given = args({"--drive", "X9", "--yes"});
  EXPECT_EQ(given.value(drive), "X9");
  EXPECT_TRUE(given.contains(yes));
}

TEST(CLIArgs, aFlagThatIsLastHasNoValue) {
  EXPECT_EQ(args({"a", "--drive"}).value(drive), std::nullopt);
  EXPECT_EQ(args({}).value(drive), std::nullopt);
}

TEST(CLIArgs, aSecondOccurrenceOfAFlagIsNeverRead) {
  EXPECT_EQ(args({"--drive", "1", "--drive", "2"}).value(drive), "1");
  EXPECT_EQ(args({"--drive", "--drive", "2"}).value(drive), "--drive");
}

TEST(CLIArgs, aFlagsValueMayLookLikeAFlag) {
  EXPECT_EQ(args({"--source", "--yes"}).value(source), "--yes");
}

TEST(CLIArgs, flagsAreMatchedByTheirExactTextOnly) {
  const CLIArgs given = args({"--YES", "--drive=X9", "-y", "--ye"});
  EXPECT_FALSE(given.contains(yes));
  EXPECT_EQ(given.value(drive), std::nullopt);
}

TEST(CLIArgs, thePositionalArgumentIsTheFirstWithoutTwoDashes) {
  EXPECT_EQ(args({"--yes", "Foo", "Bar"}).positional(), "Foo");
  EXPECT_EQ(args({"-x", "Foo"}).positional(), "-x");
  EXPECT_EQ(args({""}).positional(), "");
  EXPECT_EQ(args({"--yes", "--"}).positional(), std::nullopt);
}

TEST(CLIArgs, theFirstArgumentIsTakenWhateverItLooksLike) {
  EXPECT_EQ(args({"Foo", "--yes"}).first(), "Foo");
  EXPECT_EQ(args({"--yes", "Foo"}).first(), "--yes");
  EXPECT_EQ(args({""}).first(), "");
  EXPECT_EQ(args({}).first(), std::nullopt);
}

TEST(CLIArgs, theValueOfAFlagInFrontIsTakenForThePositionalArgument) {
  EXPECT_EQ(args({"--drive", "X9", "/Applications/Foo.app"}).positional(), "X9");
}

TEST(CLIArgs, whatTheRowOfACommandDoesNotListCannotBeAskedFor) {
  constexpr Flag other{.name = "--other", .meaning = ""};
  constexpr Command bare{.words = "bare", .purpose = "", .handler = handler};
  EXPECT_THROW(args({"--other"}).contains(other), std::logic_error);
  EXPECT_THROW((CLIArgs{{"--yes"}, bare}.contains(yes)), std::logic_error);
  EXPECT_THROW((CLIArgs{{"word"}, bare}.positional()), std::logic_error);
  EXPECT_THROW((CLIArgs{{"word"}, bare}.first()), std::logic_error);
}

TEST(CLIArgs, aFlagIsAskedForAsItsRowTells) {
  EXPECT_THROW(args({"--drive", "X9"}).contains(drive), std::logic_error);
  EXPECT_THROW(args({"--yes", "X9"}).value(yes), std::logic_error);
}

}  // namespace
}  // namespace quarn
