#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <thread>

#include "Platform/HostPlatform.h"
#include "tests/support/ScratchFolder.h"

namespace quarn {
namespace {

using namespace std::chrono_literals;

Applications& applications() {
  return hostPlatform().applications;
}

/// A program that sleeps, run from a bundle; killed and collected at the end.
class Running {
 public:
  explicit Running(const std::string& executable) {
    std::filesystem::create_directories(std::filesystem::path(executable).parent_path());
    std::filesystem::copy_file(std::filesystem::canonical("/bin/sleep"), executable);
    int ready[2];
    if (::pipe2(ready, O_CLOEXEC) != 0) return;
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

TEST(Applications, aProcessFromABundleRuns) {
  ScratchFolder scratch;
  const Running app(scratch.at("Foo Bar.app/Contents/MacOS/foo"));
  const Path real = hostPlatform().files.resolvingLinks(scratch / "Foo Bar.app");
  EXPECT_EQ(bundleOf(app.process), real);
}

TEST(Applications, aHelperDeeperInTheBundleBelongsToIt) {
  ScratchFolder scratch;
  const Running app(scratch.at("Foo.app/Contents/MacOS/deeper/helper"));
  EXPECT_EQ(bundleOf(app.process), hostPlatform().files.resolvingLinks(scratch / "Foo.app"));
}

TEST(Applications, aNestedHelperIsItsOwnBundle) {
  ScratchFolder scratch;
  const Running app(scratch.at("Foo.app/Contents/MacOS/Helper.app/Contents/MacOS/helper"));
  EXPECT_EQ(bundleOf(app.process),
            hostPlatform().files.resolvingLinks(scratch / "Foo.app/Contents/MacOS/Helper.app"));
}

TEST(Applications, aPlainToolIsNone) {
  ScratchFolder scratch;
  const Running tool(scratch.at("Foo.app/Contents/Resources/tool"));
  EXPECT_EQ(bundleOf(tool.process), std::nullopt);
}

TEST(Applications, aRemovedBundleStillRuns) {
  ScratchFolder scratch;
  const Path real = hostPlatform().files.resolvingLinks(scratch.path()).appending("Foo.app");
  const Running app(scratch.at("Foo.app/Contents/MacOS/foo"));
  std::filesystem::remove_all(scratch.at("Foo.app"));
  EXPECT_EQ(bundleOf(app.process), real);
}

TEST(Applications, aZombieRunsNoLonger) {
  ScratchFolder scratch;
  const Running app(scratch.at("Foo.app/Contents/MacOS/foo"));
  ::kill(app.process, SIGKILL);
  siginfo_t ended;
  ASSERT_EQ(::waitid(P_PID, static_cast<id_t>(app.process), &ended, WEXITED | WNOWAIT), 0);
  EXPECT_EQ(bundleOf(app.process), std::nullopt);
}

TEST(Applications, terminateAsksAndForceTerminateDoesNot) {
  ScratchFolder scratch;
  for (const int signal : {SIGTERM, SIGKILL}) {
    const Running app(scratch.at(std::to_string(signal) + ".app/Contents/MacOS/foo"));
    const RunningApplication application{app.process, bundleOf(app.process)};
    signal == SIGTERM ? applications().terminate(application) : applications().forceTerminate(application);
    siginfo_t ended{};
    ASSERT_EQ(::waitid(P_PID, static_cast<id_t>(app.process), &ended, WEXITED | WNOWAIT), 0);
    EXPECT_EQ(ended.si_status, signal);
  }
}

TEST(Applications, aNumberThatBelongsToAnotherProcessByNowIsLeftAlone) {
  ScratchFolder scratch;
  const Running app(scratch.at("Foo.app/Contents/MacOS/foo"));
  applications().forceTerminate({app.process, scratch / "Other.app"});
  applications().forceTerminate({0, std::nullopt});
  std::this_thread::sleep_for(100ms);
  EXPECT_TRUE(bundleOf(app.process).has_value());
}

TEST(Applications, waitLetsTimePass) {
  const auto before = std::chrono::steady_clock::now();
  applications().wait(30ms);
  EXPECT_GE(std::chrono::steady_clock::now() - before, 30ms);
}

}  // namespace
}  // namespace quarn
