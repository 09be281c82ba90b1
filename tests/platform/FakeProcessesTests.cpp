#include <unistd.h>

#include "Platform/HostPlatform.h"
#include "tests/platform/Subject.h"
#include "tests/support/FakePs.h"
#include "tests/support/FakeTools.h"

namespace quarn::contract {
namespace {

using ToolSubject = Subject<quarn::Processes>;

std::shared_ptr<quarn::Processes> theHosts() {
  return notOwned(hostPlatform().processes);
}
/// Gives every tool the answer that the tool below gives.
std::shared_ptr<quarn::Processes> fakePs() {
  const auto processes = std::make_shared<doubles::FakePs>("list\n");
  processes->numbered = "list\n";
  processes->status = 3;
  processes->ancestors = {::getpid(), ::getppid()};
  return processes;
}
/// Gives the tool below its answer.
std::shared_ptr<quarn::Processes> fakeTools() {
  const auto processes = std::make_shared<doubles::FakeTools>();
  processes->answers["/bin/sh -c echo"] = {.status = 3, .output = "list\n"};
  return processes;
}

/// What is promised of a tool whatever it does, for a double that starts none.
class Tool : public testing::TestWithParam<ToolSubject> {
 protected:
  std::unique_ptr<Child> start() const {
    return processes_->start(Path("/bin/sh"), {"-c", "echo list; exit 3"}, OutputStreams::separate).orThrow();
  }
  std::shared_ptr<quarn::Processes> processes_ = GetParam().make();
};
INSTANTIATE_TEST_SUITE_P(, Tool,
                         testing::Values(ToolSubject{"Host", theHosts}, ToolSubject{"FakePs", fakePs},
                                         ToolSubject{"FakeTools", fakeTools}),
                         nameOf<ToolSubject>);

TEST_P(Tool, handsOverAllItWrites) {
  for (const bool untilExit : {false, true}) {
    const auto tool = start();
    std::string written, complained;
    const auto output = [&](std::string_view piece) { written += piece; };
    const auto error = [&](std::string_view piece) { complained += piece; };
    untilExit ? tool->readUntilExit(output, error) : tool->readToEnd(output, error);
    EXPECT_EQ(written, "list\n");
    EXPECT_EQ(complained, "");
  }
}

TEST_P(Tool, tellsItsStatusAgainAndRunsNoLonger) {
  const auto tool = start();
  EXPECT_EQ(tool->waitForExit(), 3);
  EXPECT_EQ(tool->waitForExit(), 3);
  EXPECT_FALSE(tool->isRunning());
  tool->terminate();
  tool->kill();
  EXPECT_EQ(tool->waitForExit(), 3) << "what has ended can't be ended";
}

TEST_P(Tool, lineageBeginsHere) {
  const auto lineage = processes_->lineage();
  ASSERT_FALSE(lineage.empty());
  EXPECT_EQ(lineage[0], ::getpid());
}

TEST(FakePs, failsLikeATool) {
  doubles::FakePs processes("");
  processes.startable = false;
  EXPECT_EQ(code(processes.start(Path("/bin/ps"), {}, OutputStreams::separate)),
            CocoaErrorCode::fileNoSuchFile);
}

TEST(FakeTools, givesTheAnswerWithTheLongestKeyThatTheCommandBeginsWith) {
  doubles::FakeTools tools;
  tools.answers["/bin/a"] = {.status = 1};
  tools.answers["/bin/a b"] = {.status = 2};
  const auto status = [&tools](const std::vector<std::string>& arguments) {
    return tools.start(Path("/bin/a"), arguments, OutputStreams::separate).orThrow()->waitForExit();
  };
  EXPECT_EQ(status({}), 1);
  EXPECT_EQ(status({"c"}), 1);
  EXPECT_EQ(status({"b", "c"}), 2);
  EXPECT_EQ(tools.calls.back(), (std::vector<std::string>{"/bin/a", "b", "c"}));
}

TEST(FakeTools, whatHangsRunsUntilItIsToldToEnd) {
  doubles::FakeTools tools;
  tools.answers["/bin/a"] = {.hangs = true};
  for (const bool killed : {false, true}) {
    const auto tool = tools.start(Path("/bin/a"), {}, OutputStreams::separate).orThrow();
    EXPECT_TRUE(tool->isRunning());
    killed ? tool->kill() : tool->terminate();
    EXPECT_FALSE(tool->isRunning());
    EXPECT_EQ(tool->waitForExit(), killed ? 9 : 15);
  }
}

TEST(FakeTools, aCommandWithoutAnAnswerIsAToolThatIsMissing) {
  doubles::FakeTools tools;
  const auto started = tools.start(Path("/bin/nope"), {}, OutputStreams::separate);
  EXPECT_EQ(code(started), CocoaErrorCode::fileNoSuchFile);
  EXPECT_EQ(started.error().description, "The file “nope” doesn’t exist.");
}

}  // namespace
}  // namespace quarn::contract
