#include <chrono>
#include <filesystem>
#include <sys/wait.h>
#include <unistd.h>

#include "Platform/HostPlatform.h"
#include "QuarnCore/foundation/CommandRunner.h"
#include "tests/support/Child.h"
#include "tests/support/Scene.h"
#include "tests/support/ScratchFolder.h"

namespace quarn {
namespace {

CommandResult script(const std::string& text, std::optional<double> timeout = std::nullopt) {
  return CommandRunner::run(hostPlatform(), "/bin/sh", {"-c", text}, timeout);
}

template <class Action>
double secondsOf(const Action& action) {
  const auto start = std::chrono::steady_clock::now();
  action();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

TEST(CommandRunner, givesBothStreamsAndTheStatus) {
  EXPECT_EQ(script("printf out; printf err >&2; exit 3"), (CommandResult{3, "out", "err", false}));
}

TEST(CommandRunner, onlyStatusZeroWithinTheTimeSucceeds) {
  EXPECT_TRUE((CommandResult{0, "", "", false}).succeeded());
  EXPECT_FALSE((CommandResult{1, "", "", false}).succeeded());
  EXPECT_FALSE((CommandResult{0, "", "", true}).succeeded());
  EXPECT_FALSE((CommandResult{9, "", "", true}).succeeded());
}

TEST(CommandRunner, passesArgumentsWithoutAShell) {
  const auto result =
      CommandRunner::run(hostPlatform(), "/usr/bin/printf", {"%s|%s|%s", "a b", "$HOME;*", "\"\n'"});
  EXPECT_EQ(result.standardOutput, "a b|$HOME;*|\"\n'");
}

TEST(CommandRunner, aToolThatDoesNotExistGives127AndTheReason) {
  const auto result = CommandRunner::run(hostPlatform(), "/usr/bin/nope", {});
  EXPECT_EQ(result, (CommandResult{127, "", "The file “nope” doesn’t exist.", false}));
  EXPECT_FALSE(result.succeeded());
}

TEST(CommandRunner, aMissingToolWithATimeoutDidNotTimeOut) {
  EXPECT_EQ(CommandRunner::run(hostPlatform(), "/usr/bin/nope", {}, 0.0),
            (CommandResult{127, "", "The file “nope” doesn’t exist.", false}));
}

TEST(CommandRunner, aFolderCannotBeStarted) {
  EXPECT_EQ(CommandRunner::run(hostPlatform(), "/Applications", {}),
            (CommandResult{127, "", "The file “Applications” doesn’t exist.", false}));
}

TEST(CommandRunner, aFileThatIsNotExecutableCannotBeStarted) {
  scene::write("/Users/me/plain tool", "#!/bin/sh\necho ran\n");
  EXPECT_EQ(CommandRunner::run(hostPlatform(), "/Users/me/plain tool", {}),
            (CommandResult{127, "", "The file “plain tool” doesn’t exist.", false}));
}

TEST(CommandRunner, thePathVariableIsNotSearched) {
  EXPECT_EQ(CommandRunner::run(hostPlatform(), "sh", {"-c", "exit 0"}).status, 127);
}

TEST(CommandRunner, aToolThatItselfExitsWith127WasStarted) {
  EXPECT_EQ(script("printf here; exit 127"), (CommandResult{127, "here", "", false}));
}

TEST(CommandRunner, aToolKilledByASignalShowsTheNumberOfTheSignal) {
  EXPECT_EQ(script("kill -TERM $$").status, 15);
  EXPECT_EQ(script("kill -KILL $$").status, 9);
  EXPECT_FALSE(script("kill -KILL $$").timedOut);
}

TEST(CommandRunner, outputBeyondThePipeOnBothStreamsDoesNotBlock) {
  const auto result =
      script("head -c 3000000 /dev/zero | tr '\\0' e >&2 & head -c 3000000 /dev/zero | tr '\\0' o; wait");
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.standardOutput, std::string(3'000'000, 'o'));
  EXPECT_EQ(result.standardError, std::string(3'000'000, 'e'));
}

TEST(CommandRunner, aFloodOnOneStreamBeforeTheOtherDoesNotBlockEitherWay) {
  const auto result = script("head -c 1000000 /dev/zero >&2; head -c 1000000 /dev/zero", 60.0);
  EXPECT_FALSE(result.timedOut);
  EXPECT_EQ(result.standardOutput.size(), 1'000'000U);
  EXPECT_EQ(result.standardError.size(), 1'000'000U);
}

TEST(CommandRunner, invalidTextOnOneStreamEmptiesThatStreamAlone) {
  const auto out = script("printf 'good \\377 end'; printf 'fine é' >&2");
  EXPECT_EQ(out.standardOutput, "");
  EXPECT_EQ(out.standardError, "fine é");
  EXPECT_TRUE(out.succeeded());
  const auto err = script("printf 'fine é'; printf 'cut \\303' >&2");
  EXPECT_EQ(err.standardOutput, "fine é");
  EXPECT_EQ(err.standardError, "");
}

TEST(CommandRunner, aCharacterWrittenInTwoPiecesIsWhole) {
  EXPECT_EQ(script("printf '\\342\\202'; sleep 0.2; printf '\\254'").standardOutput, "€");
}

TEST(CommandRunner, zeroBytesAreKept) {
  EXPECT_EQ(script("printf 'a\\0b'").standardOutput, std::string("a\0b", 3));
}

TEST(CommandRunner, aChildThatHoldsThePipeDelaysTheResultBeyondTheToolsExit) {
  CommandResult result;
  const double seconds =
      secondsOf([&] { result = script("(sleep 0.8; printf late) & printf early; exit 4", 30.0); });
  EXPECT_EQ(result, (CommandResult{4, "earlylate", "", false}));
  EXPECT_GE(seconds, 0.8);
}

TEST(CommandRunner, aChildOfAKilledToolStillDelaysTheResult) {
  CommandResult result;
  const double seconds = secondsOf([&] { result = script("(sleep 1.2; printf late) & wait", 0.1); });
  EXPECT_TRUE(result.timedOut);
  EXPECT_EQ(result.standardOutput, "late");
  EXPECT_GE(seconds, 1.2);
}

TEST(CommandRunner, theToolHasOurEnvironmentFolderAndInput) {
  const ScratchFolder folder;
  folder.write("input", "typed\n");
  ::setenv("QUARN_TEST_WORD", "inherited", 1);
  const auto failures = child::failures([&] {
    std::filesystem::current_path(folder.text());
    ASSERT_NE(::freopen(folder.at("input").c_str(), "r", stdin), nullptr);
    const auto result = script("echo $QUARN_TEST_WORD; pwd; cat");
    EXPECT_EQ(result.standardOutput, "inherited\n" + folder.text() + "\ntyped\n");
  });
  EXPECT_EQ(failures, "");
}

TEST(CommandRunner, aToolThatEndsInTimeIsNotTimedOut) {
  CommandResult result;
  const double seconds = secondsOf([&] { result = script("sleep 0.3; printf done", 30.0); });
  EXPECT_EQ(result, (CommandResult{0, "done", "", false}));
  EXPECT_LT(seconds, 20.0);
}

TEST(CommandRunner, aToolThatOutlivesItsTimeIsAskedToEnd) {
  CommandResult result;
  const double seconds = secondsOf([&] { result = script("printf begun; exec sleep 60", 0.3); });
  EXPECT_EQ(result, (CommandResult{15, "begun", "", true}));
  EXPECT_FALSE(result.succeeded());
  EXPECT_GE(seconds, 0.3);
}

TEST(CommandRunner, aToolThatEndsWellWhenAskedStillTimedOut) {
  const auto result = script("trap 'printf bye; exit 0' TERM; while :; do sleep 0.05; done", 0.3);
  EXPECT_EQ(result, (CommandResult{0, "bye", "", true}));
  EXPECT_FALSE(result.succeeded());
}

TEST(CommandRunner, aToolThatIgnoresTheAskingIsKilledTwoSecondsAfterTheDeadline) {
  CommandResult result;
  const double seconds =
      secondsOf([&] { result = script("trap '' TERM; while :; do sleep 0.05; done", 0.5); });
  EXPECT_EQ(result, (CommandResult{9, "", "", true}));
  EXPECT_GE(seconds, 2.5);
  EXPECT_LT(seconds, 30.0);
}

TEST(CommandRunner, leavesNoDescriptorAndNoZombieBehind) {
  const auto open = [] { return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}); };
  script("exit 0");
  const auto before = open();
  for (int i = 0; i < 5; ++i) script("printf x", 5.0);
  CommandRunner::run(hostPlatform(), "/usr/bin/nope", {});
  EXPECT_EQ(open(), before);
  EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1) << "a child is left";
}

Result<CommandResult> captured(const std::string& text, OutputStreams streams) {
  return CommandRunner::capture(hostPlatform(), Path("/bin/sh"), {"-c", text}, streams);
}

TEST(CommandRunner, capturesBothStreamsInTheOrderOfTheToolOrStandardOutputAlone) {
  const char* text = "printf a; printf b >&2; printf c; exit 3";
  EXPECT_EQ(*captured(text, OutputStreams::joined), (CommandResult{3, "abc", "", false}));
  EXPECT_EQ(*captured(text, OutputStreams::separate), (CommandResult{3, "ac", "", false}));
}

TEST(CommandRunner, capturesNothingOfWhatIsNoText) {
  EXPECT_EQ(*captured("printf 'a\\377'", OutputStreams::joined), (CommandResult{0, "", "", false}));
}

TEST(CommandRunner, capturesFromAToolThatFloodsBothStreams) {
  const auto result =
      captured("head -c 300000 /dev/zero | tr '\\0' x; head -c 300000 /dev/zero >&2; printf y",
               OutputStreams::separate);
  EXPECT_EQ(result->standardOutput, std::string(300000, 'x') + "y");
}

TEST(CommandRunner, aToolThatCannotBeStartedIsTheErrorOfACapture) {
  const auto result =
      CommandRunner::capture(hostPlatform(), Path("/usr/bin/nope"), {}, OutputStreams::joined);
  ASSERT_FALSE(result);
  EXPECT_EQ(result.error().code, CocoaErrorCode::fileNoSuchFile);
  EXPECT_EQ(result.error().description, "The file “nope” doesn’t exist.");
}

TEST(CommandRunner, linesEndAtLineFeedsAloneAndEmptyOnesAreLeftOut) {
  EXPECT_EQ((CommandResult{0, "\na\n\n b \r\nc", "x", false}).lines(),
            (std::vector<std::string>{"a", " b \r", "c"}));
  EXPECT_TRUE(CommandResult{}.lines().empty());
}

}  // namespace
}  // namespace quarn
