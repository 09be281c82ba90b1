#include <cstdlib>
#include <unistd.h>

#include "QuarnCore/discovery/ProcessList.h"
#include "tests/support/FakePs.h"
#include "tests/support/Replacing.h"
#include "tests/support/Scene.h"

namespace quarn {
namespace {

using List = std::vector<std::string>;

/// A line that stands for a process of its own and is told apart from all others here.
const std::string mark = "quarn-test-mark";

List linesWith(const std::string& part, Platform& platform = hostPlatform()) {
  return ProcessList::lines(
      platform, [&part](const std::string& line) { return line.find(part) != std::string::npos; });
}

List fakeLines(doubles::FakePs& ps) {
  Platform platform = replacing({.processes = &ps});
  return linesWith("", platform);
}

TEST(ProcessList, asksForTheNameAndTheArgumentsOfEveryProcess) {
  doubles::FakePs ps("one\n");
  fakeLines(ps);
  ASSERT_FALSE(ps.calls.empty());
  EXPECT_EQ(ps.calls[0], (List{"/bin/ps", "-axo", "comm,args"}));
}

TEST(ProcessList, isSplitAtLineFeedsWithoutEmptyLines) {
  doubles::FakePs ps("\none\n\n  two  \nthree");
  EXPECT_EQ(fakeLines(ps), (List{"one", "  two  ", "three"}));
}

TEST(ProcessList, isEmptyIfPsCannotBeStarted) {
  doubles::FakePs ps("one\n");
  ps.startable = false;
  EXPECT_EQ(fakeLines(ps), List{});
}

TEST(ProcessList, isEmptyIfPsDoesNotWriteText) {
  doubles::FakePs ps("one\ntwo \xFF\nthree\n");
  EXPECT_EQ(fakeLines(ps), List{});
}

TEST(ProcessList, countsWhatAFailingPsHasWritten) {
  doubles::FakePs ps("one\n");
  ps.status = 1;
  EXPECT_EQ(fakeLines(ps), (List{"one"}));
}

TEST(ProcessList, leavesOutTheLinesOfThisProcessAndOfThoseThatStartedIt) {
  doubles::FakePs ps("sudo sudo quarn A.app\nother A.app\nquarn quarn A.app\n");
  ps.ancestors = {40, 30, 7};
  ps.numbered = "  PID COMMAND\n    7 sudo sudo quarn A.app\n   40 quarn quarn A.app\n";
  EXPECT_EQ(fakeLines(ps), (List{"other A.app"}));
  ASSERT_EQ(ps.calls.size(), 2U);
  EXPECT_EQ(ps.calls[1].back(), "40,30,7");
}

TEST(ProcessList, keepsAnotherProcessWithTheVerySameLine) {
  doubles::FakePs ps("quarn quarn A.app\nquarn quarn A.app\n");
  ps.ancestors = {40};
  ps.numbered = "   40 quarn quarn A.app\n";
  EXPECT_EQ(fakeLines(ps), (List{"quarn quarn A.app"}));
}

TEST(ProcessList, aLineCutAtTheWidthOfTheTerminalIsStillKnown) {
  doubles::FakePs ps("quarn quarn A.a\nquarn\n");
  ps.ancestors = {40};
  ps.numbered = "   40 quarn quarn A.app\n";
  EXPECT_EQ(fakeLines(ps), (List{"quarn"}));
}

TEST(ProcessList, aPsThatSaysTheSameWhateverItIsAskedLosesNoLine) {
  doubles::FakePs ps("helper /Applications/Foo.app/Contents/MacOS/x\n12 x\n");
  ps.ancestors = {40, 1};
  ps.numbered = ps.all;
  EXPECT_EQ(fakeLines(ps), (List{"helper /Applications/Foo.app/Contents/MacOS/x", "12 x"}));
}

TEST(ProcessList, theSecondQuestionIsNotAskedIfNoLineIsOfInterest) {
  doubles::FakePs ps("one\n");
  Platform platform = replacing({.processes = &ps});
  EXPECT_EQ(linesWith("nothing of the kind", platform), List{});
  EXPECT_EQ(ps.calls.size(), 1U);
}

TEST(ProcessList, showsAProcessThatRuns) {
  const scene::Background other({"/bin/sh", "-c", "sleep 30; : " + mark});
  List found;
  // The shell's child has the shell's arguments until it becomes `sleep`, so there may be two at first.
  for (int i = 0; i < 100 && found.size() != 1; ++i) {
    ::usleep(20'000);
    found = linesWith(mark);
  }
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(found[0].rfind("sh ", 0), 0U) << found[0];
}

TEST(ProcessList, isEmptyWithoutPs) {
  scene::removeTool("/bin/ps");
  EXPECT_EQ(linesWith(""), List{});
}

TEST(ProcessList, comesFromTheToolAtItsPlace) {
  scene::replaceTool("/bin/ps", "#!/bin/sh\necho \"said $*\"\n");
  EXPECT_EQ(linesWith("said"), (List{"said -axo comm,args"}));
}

TEST(ProcessList, aPsThatPrintsGarbageGivesNothing) {
  scene::replaceTool("/bin/ps", "#!/bin/sh\nhead -c 20000 /dev/urandom\nprintf '\\377'\n");
  EXPECT_EQ(linesWith(""), List{});
}

TEST(ProcessList, aPsThatFloodsBothStreamsDoesNotBlock) {
  scene::replaceTool("/bin/ps", "#!/bin/sh\nyes err | head -n 100000 >&2\nyes out | head -n 100000\n");
  EXPECT_EQ(linesWith("out").size(), 100'000U);
}

}  // namespace
}  // namespace quarn
