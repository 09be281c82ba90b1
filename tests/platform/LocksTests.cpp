#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
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

/// Another process that does something, and ends.
class Other {
 public:
  explicit Other(const std::function<void()>& body) : process_(::fork()) {
    if (process_ != 0) return;
    body();
    ::_exit(0);
  }
  ~Other() { kill(); }
  Other(const Other&) = delete;
  Other& operator=(const Other&) = delete;
  void kill() {
    if (process_ <= 0) return;
    ::kill(process_, SIGKILL);
    ::waitpid(process_, nullptr, 0);
    process_ = -1;
  }

 private:
  pid_t process_;
};

/// As another program takes the lock: a child has this program's own lock, and is given that one. What isn't
/// closed is given back when the process ends.
bool takeAsAnotherProgram(const std::string& folder) {
  return ::flock(::open(folder.c_str(), O_RDONLY | O_DIRECTORY), LOCK_EX | LOCK_NB) == 0;
}
bool canBeTakenByAnotherProgram(const std::string& folder) {
  return child::succeeds([&folder] { return takeAsAnotherProgram(folder); });
}

TEST(Locks, keepOtherProcessesOutUntilTheLastHolderLetsGo) {
  const ScratchFolder scratch;
  auto first = lock(scratch.path()).orThrow();
  auto second = lock(scratch.path()).orThrow();
  EXPECT_EQ(first, second) << "within one process it is one lock";
  EXPECT_FALSE(canBeTakenByAnotherProgram(scratch.text()));
  first.reset();
  EXPECT_FALSE(canBeTakenByAnotherProgram(scratch.text()));
  second.reset();
  EXPECT_TRUE(canBeTakenByAnotherProgram(scratch.text()));
}

TEST(Locks, areWaitedForAndSaidToBeOnce) {
  const ScratchFolder scratch;
  const Other holder([&scratch] {
    if (takeAsAnotherProgram(scratch.text())) scratch.write("held");
    ::usleep(400'000);
  });
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
    if (::write(ends[1], &byte, 1) == 1) ::pause();
  });
  char byte = 0;
  ASSERT_EQ(::read(ends[0], &byte, 1), 1);
  ASSERT_EQ(byte, '+');
  EXPECT_FALSE(canBeTakenByAnotherProgram(scratch.text()));
  holder.kill();
  EXPECT_TRUE(canBeTakenByAnotherProgram(scratch.text()));
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

TEST(Locks, areNotHandedToTools) {
  const ScratchFolder scratch;
  auto held = lock(scratch.path()).orThrow();
  auto tool = hostPlatform().processes.start(Path("/bin/sleep"), {"0.5"}, OutputStreams::separate).orThrow();
  held.reset();
  EXPECT_TRUE(canBeTakenByAnotherProgram(scratch.text())) << "though the tool still runs";
  tool->waitForExit();
}

}  // namespace
}  // namespace quarn
