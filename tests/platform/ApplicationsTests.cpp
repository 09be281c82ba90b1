#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Platform/HostPlatform.h"
#include "tests/platform/Subject.h"
#include "tests/support/Doubles.h"
#include "tests/support/ScratchFolder.h"

namespace quarn::contract {
namespace {

using namespace std::chrono_literals;

quarn::Applications& applications() {
  return hostPlatform().applications;
}

/// A program that sleeps as long as its argument says, and may be copied: a system may refuse to run a copy
/// of its own.
std::filesystem::path sleeper() {
  const char* named = std::getenv("QUARN_SLEEPER");
  return std::filesystem::canonical(named ? named : "/bin/sleep");
}

/// A program that sleeps, run from a bundle; killed and collected at the end.
class Running {
 public:
  explicit Running(const std::string& executable) {
    std::filesystem::create_directories(std::filesystem::path(executable).parent_path());
    std::filesystem::copy_file(sleeper(), executable);
    int ready[2];
    if (::pipe(ready) != 0) return;
    for (const int end : ready) ::fcntl(end, F_SETFD, FD_CLOEXEC);
    process = ::fork();
    if (process == 0) {
      ::execl(executable.c_str(), executable.c_str(), "60", nullptr);
      ::_exit(127);
    }
    // At its end when the program has begun, since the other end is closed then.
    ::close(ready[1]);
    char end;
    while (::read(ready[0], &end, 1) > 0) {
    }
    ::close(ready[0]);
  }
  ~Running() {
    if (process <= 0) return;
    ::kill(process, SIGKILL);
    ::waitpid(process, nullptr, 0);
  }
  pid_t process = -1;
};

std::optional<Path> bundleOf(pid_t process) {
  for (const auto& application : applications().running()) {
    if (application.processIdentifier == process) return application.bundlePath;
  }
  return std::nullopt;
}

/// A list with one application in it that ends when it is asked to.
class Scene {
 public:
  virtual ~Scene() = default;
  virtual quarn::Applications& applications() = 0;
  virtual RunningApplication application() const = 0;
  /// Time as the list counts it.
  virtual std::chrono::steady_clock::time_point now() const = 0;
};

class HostScene : public Scene {
 public:
  quarn::Applications& applications() override { return hostPlatform().applications; }
  RunningApplication application() const override {
    return {app_.process, hostPlatform().files.resolvingLinks(scratch_ / "Foo Bar.app")};
  }
  std::chrono::steady_clock::time_point now() const override { return hostPlatform().clock.steadyNow(); }

 private:
  ScratchFolder scratch_;
  Running app_{scratch_.at("Foo Bar.app/Contents/MacOS/foo")};
};

class FakeScene : public Scene {
 public:
  FakeScene() { applications_.instances.push_back({application(), 0.05, 0.02, std::nullopt}); }
  quarn::Applications& applications() override { return applications_; }
  RunningApplication application() const override { return {11, Path("/Applications/Foo.app")}; }
  std::chrono::steady_clock::time_point now() const override { return clock_.steadyNow(); }

 private:
  doubles::FakeClock clock_;
  doubles::FakeApplications applications_{clock_};
};

std::shared_ptr<Scene> onTheHost() {
  return std::make_shared<HostScene>();
}
std::shared_ptr<Scene> faked() {
  return std::make_shared<FakeScene>();
}

class Applications : public testing::TestWithParam<Subject<Scene>> {
 protected:
  quarn::Applications& applications() const { return scene_->applications(); }
  RunningApplication application() const { return scene_->application(); }
  std::chrono::steady_clock::time_point now() const { return scene_->now(); }
  bool isRunning() const {
    const auto list = applications().running();
    return std::count(list.begin(), list.end(), application()) == 1;
  }
  bool endsSoon() const {
    for (int i = 0; i < 1000 && isRunning(); ++i) applications().wait(10ms);
    return !isRunning();
  }

 private:
  std::shared_ptr<Scene> scene_ = GetParam().make();
};
INSTANTIATE_TEST_SUITE_P(, Applications,
                         testing::Values(Subject<Scene>{"Host", onTheHost},
                                         Subject<Scene>{"FakeApplications", faked}),
                         nameOf<Subject<Scene>>);

TEST_P(Applications, thatRunAreListedWithTheirBundles) {
  EXPECT_TRUE(isRunning());
}

TEST_P(Applications, endWhenTheyAreAskedTo) {
  applications().terminate(application());
  EXPECT_TRUE(endsSoon());
  applications().terminate(application());
}

TEST_P(Applications, endWithoutBeingAsked) {
  applications().forceTerminate(application());
  EXPECT_TRUE(endsSoon());
  applications().forceTerminate(application());
}

TEST_P(Applications, ofAnotherBundleThatHaveTheNumberByNowAreLeftAlone) {
  const RunningApplication former{application().processIdentifier, Path("/Applications/Former.app")};
  applications().terminate(former);
  applications().forceTerminate(former);
  applications().forceTerminate({0, std::nullopt});
  applications().wait(100ms);
  EXPECT_TRUE(isRunning());
}

TEST_P(Applications, areWaitedForWhileTimePasses) {
  const auto before = now();
  applications().wait(30ms);
  EXPECT_GE(now() - before, 30ms);
}

TEST(HostApplications, aHelperDeeperInTheBundleBelongsToIt) {
  ScratchFolder scratch;
  const Running app(scratch.at("Foo.app/Contents/MacOS/deeper/helper"));
  EXPECT_EQ(bundleOf(app.process), hostPlatform().files.resolvingLinks(scratch / "Foo.app"));
}

TEST(HostApplications, aNestedHelperIsItsOwnBundle) {
  ScratchFolder scratch;
  const Running app(scratch.at("Foo.app/Contents/MacOS/Helper.app/Contents/MacOS/helper"));
  EXPECT_EQ(bundleOf(app.process),
            hostPlatform().files.resolvingLinks(scratch / "Foo.app/Contents/MacOS/Helper.app"));
}

TEST(HostApplications, aPlainToolIsNoApplication) {
  ScratchFolder scratch;
  const Running tool(scratch.at("Foo.app/Contents/Resources/tool"));
  EXPECT_EQ(bundleOf(tool.process), std::nullopt);
}

TEST(HostApplications, aRemovedBundleStillRuns) {
  ScratchFolder scratch;
  const Path real = hostPlatform().files.resolvingLinks(scratch.path()).appending("Foo.app");
  const Running app(scratch.at("Foo.app/Contents/MacOS/foo"));
  std::filesystem::remove_all(scratch.at("Foo.app"));
  EXPECT_EQ(bundleOf(app.process), real);
}

TEST(HostApplications, aZombieRunsNoLonger) {
  ScratchFolder scratch;
  const Running app(scratch.at("Foo.app/Contents/MacOS/foo"));
  ::kill(app.process, SIGKILL);
  siginfo_t ended;
  ASSERT_EQ(::waitid(P_PID, static_cast<id_t>(app.process), &ended, WEXITED | WNOWAIT), 0);
  EXPECT_EQ(bundleOf(app.process), std::nullopt);
}

TEST(HostApplications, terminateAsksAndForceTerminateDoesNot) {
  ScratchFolder scratch;
  for (const int signal : {SIGTERM, SIGKILL}) {
    Running app(scratch.at(std::to_string(signal) + ".app/Contents/MacOS/foo"));
    const RunningApplication application{app.process, bundleOf(app.process)};
    signal == SIGTERM ? applications().terminate(application) : applications().forceTerminate(application);
    int status = 0;
    ASSERT_EQ(::waitpid(app.process, &status, 0), app.process);
    app.process = -1;
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == signal);
  }
}

}  // namespace
}  // namespace quarn::contract
