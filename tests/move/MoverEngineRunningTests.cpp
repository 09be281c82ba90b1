#include <algorithm>

#include "tests/move/Moving.h"
#include "tests/support/Doubles.h"

namespace quarn {
namespace {

using namespace moving;

const std::string isRunning = "App is running: Foo.app. Quit it first, or pass --quit-running.";

class RunningApp : public ::testing::Test {
 protected:
  void SetUp() override { scene::makeApp(app); }

  void runs(const std::string& bundle, std::optional<double> endsAfterTerminate) {
    applications.instances.push_back({{4711, Path(bundle)}, endsAfterTerminate, 0.0, std::nullopt});
  }
  std::string moveIt(bool quitRunning, const std::string& source = app) {
    return move(replacing({.applications = &applications, .clock = &clock}), source, appsFolder, quitRunning);
  }

  doubles::FakeClock clock;
  doubles::FakeApplications applications{clock};
};

TEST_F(RunningApp, stopsTheMoveBeforeAnythingIsMade) {
  runs(app, 1.0);
  const auto before = scene::tree("/Applications");
  EXPECT_EQ(moveIt(false), isRunning);
  EXPECT_EQ(scene::tree("/Applications"), before);
  EXPECT_FALSE(scene::exists(scene::drive + "/ExternalQuarn"));
  EXPECT_TRUE(applications.terminated.empty());
}

TEST_F(RunningApp, isKnownByItsStandardizedPath) {
  runs("/Applications/./Foo.app", 1.0);
  EXPECT_EQ(moveIt(false, "/Applications//Foo.app"), isRunning);
}

TEST_F(RunningApp, isAskedToQuitAndThenMoved) {
  runs(app, 7.9);
  EXPECT_EQ(moveIt(true), "nothing");
  EXPECT_EQ(applications.terminated, (std::vector<int>{4711}));
  EXPECT_TRUE(applications.forced.empty());
  EXPECT_EQ(scene::target(app), movedApp);
}

TEST_F(RunningApp, thatDoesNotQuitWithinEightSecondsStopsTheMoveAndIsNeverForced) {
  runs(app, 8.5);
  EXPECT_EQ(moveIt(true), isRunning);
  EXPECT_TRUE(applications.forced.empty());
  EXPECT_GE(clock.seconds(), 8.0);
  EXPECT_LT(clock.seconds(), 8.4);
  EXPECT_FALSE(scene::exists(scene::drive + "/ExternalQuarn"));
}

TEST_F(RunningApp, anotherOneDoesNotMatter) {
  runs("/Applications/Other.app", std::nullopt);
  EXPECT_EQ(moveIt(false), "nothing");
}

TEST_F(RunningApp, isOnlyLookedForWhereTheExtensionIsExactlyApp) {
  scene::makeApp("/Applications/Foo.APP");
  runs("/Applications/Foo.APP", std::nullopt);
  EXPECT_EQ(moveIt(false, "/Applications/Foo.APP"), "nothing");
}

TEST_F(RunningApp, thatOnlyTheProcessListShowsStopsTheMove) {
  // The same answer for the lines of this program itself would take the line away.
  scene::replaceTool("/bin/ps",
                     "#!/bin/sh\ncase \"$1\" in -axo) echo 'helper  "
                     "/Applications/Foo.app/Contents/MacOS/helper';; esac\n");
  EXPECT_EQ(moveIt(false), isRunning);
  EXPECT_EQ(moveIt(true), "nothing") << "there is no instance to wait for";
}

}  // namespace
}  // namespace quarn
