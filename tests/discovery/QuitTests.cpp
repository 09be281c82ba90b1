#include "QuarnCore/discovery/RunningAppsDetector.h"
#include "tests/support/Doubles.h"
#include "tests/support/FakePs.h"
#include "tests/support/Replacing.h"

namespace quarn {
namespace {

const Path foo("/Applications/Foo.app");

using Numbers = std::vector<int>;

class Quit : public testing::Test {
 protected:
  void add(int number, std::optional<double> afterTerminate, std::optional<double> afterForce,
           const Path& bundle = foo) {
    applications.instances.push_back({{number, bundle}, afterTerminate, afterForce, {}});
  }
  bool quit(bool force, double timeout) {
    Platform platform = replacing({.processes = &ps, .applications = &applications, .clock = &clock});
    return RunningAppsDetector::quit(platform, foo, force, timeout);
  }
  void expectPollsOfAFifthOfASecond() const {
    for (const auto wait : applications.waits) EXPECT_EQ(wait, std::chrono::milliseconds(200));
  }

  doubles::FakeClock clock;
  doubles::FakeApplications applications{clock};
  doubles::FakePs ps{"x /Applications/Foo.app/Contents/MacOS/x\n"};
};

TEST_F(Quit, withNoInstanceIsDoneAtOnceAndSendsNothing) {
  add(9, {}, {}, Path("/Applications/Other.app"));
  EXPECT_TRUE(quit(true, 10));
  EXPECT_TRUE(applications.terminated.empty());
  EXPECT_TRUE(applications.forced.empty());
  EXPECT_EQ(clock.seconds(), 0);
}

TEST_F(Quit, aProcessThatOnlyTheProcessListShowsCannotBeAsked) {
  EXPECT_TRUE(quit(true, 10));
  EXPECT_TRUE(ps.calls.empty());
}

TEST_F(Quit, asksEveryInstancePolitelyAndNobodyElse) {
  add(1, 0.1, {});
  add(2, {}, {}, Path("/Applications/Other.app"));
  add(3, 0.1, {});
  EXPECT_TRUE(quit(false, 10));
  EXPECT_EQ(applications.terminated, (Numbers{1, 3}));
  EXPECT_TRUE(applications.forced.empty());
}

TEST_F(Quit, isDoneAtTheFirstPollThatFindsNobody) {
  add(1, 0.1, {});
  add(2, 1.5, {});
  EXPECT_TRUE(quit(false, 10));
  EXPECT_NEAR(clock.seconds(), 1.6, 0.001);
  EXPECT_EQ(applications.waits.size(), 8U);
  expectPollsOfAFifthOfASecond();
}

TEST_F(Quit, withoutForceGivesUpAtTheTimeout) {
  add(1, {}, 0.0);
  EXPECT_FALSE(quit(false, 2));
  EXPECT_NEAR(clock.seconds(), 2.0, 0.001);
  EXPECT_TRUE(applications.forced.empty());
}

TEST_F(Quit, withForceEndsOnlyWhatIsLeft) {
  add(1, 0.5, {});
  add(2, {}, 0.3);
  EXPECT_TRUE(quit(true, 2));
  EXPECT_EQ(applications.terminated, (Numbers{1, 2}));
  EXPECT_EQ(applications.forced, (Numbers{2}));
  EXPECT_NEAR(clock.seconds(), 2.4, 0.001);
  expectPollsOfAFifthOfASecond();
}

TEST_F(Quit, waitsThreeSecondsMoreAfterForce) {
  add(1, {}, 2.9);
  EXPECT_TRUE(quit(true, 1));
  EXPECT_NEAR(clock.seconds(), 4.0, 0.201);
}

TEST_F(Quit, tellsIfForceDidNotHelp) {
  add(1, {}, {});
  EXPECT_FALSE(quit(true, 1));
  EXPECT_NEAR(clock.seconds(), 4.0, 0.001);
  EXPECT_EQ(applications.forced, (Numbers{1}));
}

TEST_F(Quit, aTimeoutOfZeroAsksAndLooksOnceMore) {
  add(1, 0.0, {});
  EXPECT_TRUE(quit(false, 0));
  EXPECT_EQ(clock.seconds(), 0);
  EXPECT_EQ(applications.terminated, (Numbers{1}));
}

TEST_F(Quit, aTimeoutOfZeroWithForceGoesOnAtOnce) {
  add(1, {}, 0.1);
  EXPECT_TRUE(quit(true, 0));
  EXPECT_NEAR(clock.seconds(), 0.2, 0.001);
}

}  // namespace
}  // namespace quarn
