#include <cerrno>
#include <csignal>
#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Platform/HostPlatform.h"
#include "tests/support/Child.h"
#include "tests/support/ScratchFolder.h"

namespace quarn {
namespace {

using LockResult = Result<std::shared_ptr<Lock>>;

LockResult lock(
    const Path& folder, const std::function<void()>& waiting = [] {}) {
  return hostPlatform().locks.lock(folder, waiting);
}

/// Another process that takes the lock, tells how by its exit status, and ends.
class Other {
 public:
  explicit Other(const std::function<int()>& body) : process_(::fork()) {
    if (process_ == 0) ::_exit(body());
  }
  int status() {
    int found = 0;
    ::waitpid(process_, &found, 0);
    return WIFEXITED(found) ? WEXITSTATUS(found) : -1;
  }
  void kill() { ::kill(process_, SIGKILL); }

 private:
  pid_t process_;
};

/// A child inherits its parent's locks, so the one that is asked for must be that of another host object; a
/// program of its own is the honest way to get one.
int takenByAnotherProgram(const std::string& folder) {
  const std::string command = "exec flock -n '" + folder + "' true";
  return WEXITSTATUS(std::system(command.c_str()));
}

TEST(Locks, keepOtherProcessesOutUntilTheLastHolderLetsGo) {
  const ScratchFolder scratch;
  auto first = lock(scratch.path()).orThrow();
  auto second = lock(scratch.path()).orThrow();
  EXPECT_EQ(first, second) << "within one process it is one lock";
  EXPECT_EQ(takenByAnotherProgram(scratch.text()), 1);
  first.reset();
  EXPECT_EQ(takenByAnotherProgram(scratch.text()), 1);
  second.reset();
  EXPECT_EQ(takenByAnotherProgram(scratch.text()), 0);
}

TEST(Locks, areWaitedForAndSaidToBeOnce) {
  const ScratchFolder scratch;
  const std::string held = scratch.at("held");
  const std::string hold = "flock '" + scratch.text() + "' sh -c 'touch " + held + "; sleep 0.4' &";
  ASSERT_EQ(std::system(hold.c_str()), 0);
  while (!scratch.stands("held")) ::usleep(5000);
  int said = 0;
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_TRUE(lock(scratch.path(), [&said] { ++said; }));
  EXPECT_EQ(said, 1);
  EXPECT_GT(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(150));
}

TEST(Locks, endWithTheirProcess) {
  const ScratchFolder scratch;
  int ends[2];
  ASSERT_EQ(::pipe(ends), 0);
  Other holder([&] {
    const auto held = lock(scratch.path());
    const char byte = held ? '+' : '-';
    if (::write(ends[1], &byte, 1) != 1) return 1;
    ::pause();
    return 0;
  });
  char byte = 0;
  ASSERT_EQ(::read(ends[0], &byte, 1), 1);
  ASSERT_EQ(byte, '+');
  EXPECT_EQ(takenByAnotherProgram(scratch.text()), 1);
  holder.kill();
  holder.status();
  EXPECT_EQ(takenByAnotherProgram(scratch.text()), 0);
  ::close(ends[0]);
  ::close(ends[1]);
}

TEST(Locks, leaveNothingBehindAndNeedAFolder) {
  const ScratchFolder scratch;
  scratch.write("file");
  lock(scratch.path()).orThrow();
  EXPECT_EQ(scratch.count(), 1u);
  EXPECT_FALSE(lock(scratch / "none"));
  EXPECT_FALSE(lock(scratch / "file"));
}

TEST(Locks, thatAVolumeDoesNotKnowKeepNobodyOut) {
  if (!child::canRefuseCalls()) GTEST_SKIP() << "system calls can't be refused to a process here";
  const ScratchFolder scratch;
  for (const int error : {ENOTSUP, ENOLCK, EISDIR, ENOSYS}) {
    EXPECT_EQ(child::failuresRefusing(SYS_flock, error, [&] { EXPECT_TRUE(lock(scratch.path())); }), "")
        << error;
  }
  EXPECT_EQ(child::failuresRefusing(SYS_flock, EIO, [&] { EXPECT_FALSE(lock(scratch.path())); }), "");
}

TEST(Locks, areNotHandedToTools) {
  const ScratchFolder scratch;
  auto held = lock(scratch.path()).orThrow();
  auto tool = hostPlatform().processes.start(Path("/bin/sleep"), {"0.5"}, OutputStreams::separate).orThrow();
  held.reset();
  EXPECT_EQ(takenByAnotherProgram(scratch.text()), 0) << "though the tool still runs";
  tool->waitForExit();
}

}  // namespace
}  // namespace quarn
