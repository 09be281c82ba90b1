#include <cstdint>
#include <fcntl.h>
#include <fstream>
#include <gtest/gtest.h>
#include <signal.h>
#include <sstream>
#include <unistd.h>

#include "Platform/HostPlatform.h"

namespace quarn {
namespace {

Result<std::unique_ptr<Child>> start(const Path& tool, const std::vector<std::string>& arguments) {
  return hostPlatform().processes.start(tool, arguments, OutputStreams::separate);
}

std::unique_ptr<Child> script(const std::string& text) {
  return start(Path("/bin/sh"), {"-c", text}).orThrow();
}

std::string written(Child& child) {
  std::string output;
  child.readToEnd([&](std::string_view piece) { output += piece; }, [](std::string_view) {});
  return output;
}

TEST(LinuxProcesses, giveTheToolAGroupOfItsOwn) {
  const auto child = script("cut -d' ' -f1,5 /proc/$$/stat");
  const std::string line = written(*child);
  const std::size_t space = line.find(' ');
  ASSERT_NE(space, std::string::npos);
  EXPECT_EQ(line.substr(0, space) + "\n", line.substr(space + 1));
}

TEST(LinuxProcesses, giveTheToolNoOtherDescriptors) {
  const int leaking = ::open("/dev/null", O_RDONLY);
  ASSERT_GT(leaking, 2);
  const auto other = script("sleep 5");
  const auto child = start(Path("/bin/ls"), {"/proc/self/fd"}).orThrow();
  // The fourth is the folder that is being listed.
  EXPECT_EQ(written(*child), "0\n1\n2\n3\n");
  ::close(leaking);
  other->kill();
  EXPECT_EQ(other->waitForExit(), 9);
}

TEST(LinuxProcesses, giveTheToolItsSignalsBack) {
  ::signal(SIGPIPE, SIG_IGN);
  sigset_t blocked, before;
  ::sigemptyset(&blocked);
  ::sigaddset(&blocked, SIGUSR1);
  ::pthread_sigmask(SIG_BLOCK, &blocked, &before);
  const auto child = script("grep -E 'SigIgn|SigBlk' /proc/self/status | cut -f2");
  std::istringstream lines(written(*child));
  ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
  ::signal(SIGPIPE, SIG_DFL);
  std::uint64_t blockedThere = ~0ull, ignoredThere = ~0ull;
  lines >> std::hex >> blockedThere >> ignoredThere;
  EXPECT_EQ(blockedThere, 0u);
  // Above these lie the ones that the C library keeps to itself.
  EXPECT_EQ(ignoredThere & 0x7FFFFFFFu, 0u);
}

TEST(LinuxProcesses, lineageIsNotMisledByANameWithParentheses) {
  // The kernel's name of this process stands in its own line of the table.
  std::ofstream("/proc/self/comm") << "x) S 99 (y";
  const auto lineage = hostPlatform().processes.lineage();
  EXPECT_EQ(lineage.size() > 1 ? lineage[1] : 0, ::getppid());
}

}  // namespace
}  // namespace quarn
