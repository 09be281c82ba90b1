#include <chrono>
#include <csignal>
#include <filesystem>
#include <optional>
#include <unistd.h>

#include "Platform/HostPlatform.h"
#include "QuarnCore/discovery/RunningAppsDetector.h"
#include "tests/support/Scene.h"

namespace quarn {
namespace {

namespace fs = std::filesystem;

const Path foo("/Applications/Foo App.app");
const std::string executable = foo.text() + "/Contents/MacOS/Foo";
const std::string ready = "/Users/me/ready";

bool isRunning() {
  return RunningAppsDetector::isRunning(hostPlatform(), foo);
}

std::size_t instances() {
  return RunningAppsDetector::runningInstances(hostPlatform(), foo).size();
}

/// An application that is a shell of its own, so that a script tells how it behaves. Ready once it runs.
/// For a moment at a time it is two processes, before a child of it becomes another program.
class Application {
 public:
  explicit Application(const std::string& script) {
    if (!scene::exists(executable)) {
      scene::makeFolder(foo.text() + "/Contents/MacOS");
      fs::copy_file(fs::canonical("/bin/sh"), executable);
    }
    fs::remove(ready);
    process_.emplace(std::vector<std::string>{executable, "-c", script + " : >" + ready + "; " + forever});
    EXPECT_TRUE(scene::appears(ready));
  }
  scene::Background& process() { return *process_; }
  bool isThere() const { return ::kill(process_->pid(), 0) == 0; }

 private:
  static constexpr const char* forever = "while :; do sleep 0.05; done";
  std::optional<scene::Background> process_;
};

bool quit(bool force, double timeout, double& seconds) {
  const auto start = std::chrono::steady_clock::now();
  const bool left = RunningAppsDetector::quit(hostPlatform(), foo, force, timeout);
  seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  return left;
}

TEST(RunningProcesses, anApplicationThatWasNotStartedDoesNotRun) {
  scene::makeApp(foo.text());
  EXPECT_FALSE(isRunning());
  EXPECT_EQ(instances(), 0U);
}

TEST(RunningProcesses, aStartedApplicationRunsAndIsAnInstance) {
  const Application app("");
  EXPECT_TRUE(isRunning());
  EXPECT_GE(instances(), 1U);
}

TEST(RunningProcesses, aPoliteApplicationLeaves) {
  Application app("trap 'exit 7' TERM;");
  double seconds = 0;
  EXPECT_TRUE(quit(false, 20, seconds));
  EXPECT_EQ(app.process().wait(), 7);
  EXPECT_FALSE(isRunning());
}

TEST(RunningProcesses, oneThatTakesThreeSecondsIsWaitedFor) {
  Application app("trap 'sleep 3; exit 7' TERM;");
  double seconds = 0;
  EXPECT_TRUE(quit(false, 30, seconds));
  EXPECT_GE(seconds, 3.0);
  EXPECT_EQ(app.process().wait(), 7) << "it was not killed";
}

TEST(RunningProcesses, oneThatTakesLongerThanTheTimeoutIsStillThere) {
  Application app("trap 'sleep 3; exit 7' TERM;");
  double seconds = 0;
  EXPECT_FALSE(quit(false, 0.5, seconds));
  EXPECT_GE(seconds, 0.5);
  EXPECT_TRUE(app.isThere());
  EXPECT_GE(instances(), 1U);
}

TEST(RunningProcesses, oneThatIgnoresTheAskingStaysWithoutForce) {
  const Application app("trap '' TERM;");
  double seconds = 0;
  EXPECT_FALSE(quit(false, 0.6, seconds));
  EXPECT_TRUE(app.isThere());
  EXPECT_TRUE(isRunning());
}

TEST(RunningProcesses, oneThatIgnoresTheAskingIsEndedByForce) {
  Application app("trap '' TERM;");
  double seconds = 0;
  EXPECT_TRUE(quit(true, 0.6, seconds));
  EXPECT_GE(seconds, 0.6);
  EXPECT_EQ(app.process().wait(), -SIGKILL);
}

TEST(RunningProcesses, severalInstancesAllLeave) {
  Application one("trap 'exit 7' TERM;");
  Application two("trap '' TERM;");
  EXPECT_GE(instances(), 2U);
  double seconds = 0;
  EXPECT_TRUE(quit(true, 1, seconds));
  EXPECT_EQ(one.process().wait(), 7);
  EXPECT_EQ(two.process().wait(), -SIGKILL);
}

TEST(RunningProcesses, aZombieRunsNoLonger) {
  Application app("");
  ASSERT_EQ(::kill(app.process().pid(), SIGKILL), 0);
  for (int i = 0; i < 200 && instances() != 0; ++i) ::usleep(20'000);
  EXPECT_TRUE(app.isThere()) << "nobody has collected it";
  EXPECT_EQ(instances(), 0U);
  EXPECT_FALSE(isRunning());
  double seconds = 0;
  EXPECT_TRUE(quit(true, 20, seconds));
  EXPECT_LT(seconds, 15.0);
}

TEST(RunningProcesses, oneThatBecomesAZombieWhileItIsAskedCountsAsGone) {
  Application app("trap 'exit 7' TERM;");
  double seconds = 0;
  EXPECT_TRUE(quit(false, 20, seconds));
  EXPECT_TRUE(app.isThere()) << "nobody has collected it";
}

TEST(RunningProcesses, withoutPsTheSystemsOwnListStillTells) {
  const Application app("");
  scene::removeTool("/bin/ps");
  EXPECT_TRUE(isRunning());
}

TEST(RunningProcesses, aPsThatFailsOrPrintsGarbageLeavesTheSystemsOwnList) {
  const Application app("");
  for (const std::string script : {"exit 1", "kill -9 $$", "head -c 5000 /dev/urandom; printf '\\377'"}) {
    scene::replaceTool("/bin/ps", "#!/bin/sh\n" + script + "\n");
    EXPECT_TRUE(isRunning()) << script;
    EXPECT_FALSE(RunningAppsDetector::isRunning(hostPlatform(), Path("/Applications/Bar.app"))) << script;
  }
}

TEST(RunningProcesses, whatPsAloneShowsRunsButCannotBeAskedToQuit) {
  scene::replaceTool("/bin/ps", "#!/bin/sh\necho 'Foo " + executable + "'\n");
  EXPECT_TRUE(isRunning());
  EXPECT_EQ(instances(), 0U);
  double seconds = 0;
  EXPECT_TRUE(quit(true, 20, seconds));
  EXPECT_LT(seconds, 15.0);
}

}  // namespace
}  // namespace quarn
