#include "QuarnCore/foundation/CommandRunner.h"
#include "tests/support/Doubles.h"
#include "tests/support/Replacing.h"

namespace quarn {
namespace {

/// What happened to the tool, with the second at which it did.
struct Story {
  std::vector<std::pair<std::string, double>> events;
  int looks = 0;
};

/// A tool that ends at moments of the fake clock.
class ScriptedTool : public Child {
 public:
  struct Plan {
    double endsAt = 1e9;
    bool heedsTerminate = true;
  };
  ScriptedTool(Plan plan, doubles::FakeClock& clock, Story& story)
      : plan_(plan), clock_(clock), story_(story) {}

  bool isRunning() override {
    ++story_.looks;
    return clock_.seconds() < plan_.endsAt;
  }
  int waitForExit() override { return status_; }
  void terminate() override {
    story_.events.emplace_back("terminate", clock_.seconds());
    if (plan_.heedsTerminate) end(15);
  }
  void kill() override {
    story_.events.emplace_back("kill", clock_.seconds());
    end(9);
  }
  void readToEnd(const OutputSink&, const OutputSink&) override {}
  void readUntilExit(const OutputSink&, const OutputSink&) override {}

 private:
  void end(int status) {
    plan_.endsAt = clock_.seconds();
    status_ = status;
  }
  Plan plan_;
  doubles::FakeClock& clock_;
  Story& story_;
  int status_ = 0;
};

class OneTool : public Processes {
 public:
  OneTool(ScriptedTool::Plan plan, doubles::FakeClock& clock) : plan_(plan), clock_(clock) {}
  Result<std::unique_ptr<Child>> start(const Path&, const std::vector<std::string>&, OutputStreams) override {
    return std::unique_ptr<Child>(std::make_unique<ScriptedTool>(plan_, clock_, story));
  }
  std::vector<int> lineage() const override { return {}; }
  Story story;

 private:
  ScriptedTool::Plan plan_;
  doubles::FakeClock& clock_;
};

class CommandRunnerTimeout : public testing::Test {
 protected:
  CommandResult run(ScriptedTool::Plan plan, std::optional<double> timeout) {
    OneTool processes(plan, clock);
    Platform platform = replacing({.processes = &processes, .clock = &clock});
    const auto result = CommandRunner::run(platform, "/bin/tool", {}, timeout);
    story = processes.story;
    return result;
  }
  void expectEvent(std::size_t index, const std::string& name, double second) const {
    ASSERT_LT(index, story.events.size());
    EXPECT_EQ(story.events[index].first, name);
    EXPECT_NEAR(story.events[index].second, second, 0.051) << name;
  }

  doubles::FakeClock clock;
  Story story;
};

TEST_F(CommandRunnerTimeout, looksEveryTwentiethOfASecond) {
  run({.endsAt = 0.99}, 5.0);
  EXPECT_NEAR(clock.seconds(), 1.0, 0.001);
  EXPECT_EQ(clock.sleeps, 20);
  EXPECT_TRUE(story.events.empty());
}

TEST_F(CommandRunnerTimeout, endingBetweenTheLastLookAndTheDeadlineIsInTime) {
  EXPECT_FALSE(run({.endsAt = 0.11}, 0.12).timedOut);
  EXPECT_TRUE(story.events.empty());
}

TEST_F(CommandRunnerTimeout, stillRunningAtTheDeadlineIsAskedToEndThen) {
  const auto result = run({}, 1.0);
  EXPECT_EQ(result, (CommandResult{15, "", "", true}));
  ASSERT_EQ(story.events.size(), 1U);
  expectEvent(0, "terminate", 1.0);
}

TEST_F(CommandRunnerTimeout, theKillComesTwoSecondsAfterTheAsking) {
  const auto result = run({.heedsTerminate = false}, 1.0);
  EXPECT_EQ(result, (CommandResult{9, "", "", true}));
  ASSERT_EQ(story.events.size(), 2U);
  expectEvent(0, "terminate", 1.0);
  expectEvent(1, "kill", 3.0);
}

TEST_F(CommandRunnerTimeout, endingWithinTheGraceIsNotKilled) {
  const auto result = run({.endsAt = 2.7, .heedsTerminate = false}, 1.0);
  EXPECT_TRUE(result.timedOut);
  ASSERT_EQ(story.events.size(), 1U);
  expectEvent(0, "terminate", 1.0);
}

TEST_F(CommandRunnerTimeout, zeroEscalatesAtOnceWithoutWaiting) {
  EXPECT_TRUE(run({}, 0.0).timedOut);
  ASSERT_EQ(story.events.size(), 1U);
  EXPECT_EQ(story.events[0], (std::pair<std::string, double>("terminate", 0.0)));
  EXPECT_EQ(clock.sleeps, 0);
}

TEST_F(CommandRunnerTimeout, zeroIsEnoughForAToolThatHasEndedByTheFirstLook) {
  EXPECT_FALSE(run({.endsAt = 0.0}, 0.0).timedOut);
  EXPECT_TRUE(story.events.empty());
}

TEST_F(CommandRunnerTimeout, aNegativeOneIsLikeZero) {
  EXPECT_TRUE(run({}, -5.0).timedOut);
  EXPECT_EQ(clock.sleeps, 0);
}

TEST_F(CommandRunnerTimeout, withoutOneNobodyLooksAndNobodyIsAsked) {
  EXPECT_FALSE(run({}, std::nullopt).timedOut);
  EXPECT_EQ(story.looks, 0);
  EXPECT_TRUE(story.events.empty());
}

}  // namespace
}  // namespace quarn
