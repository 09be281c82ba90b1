#include "tests/support/KilledAt.h"

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <map>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/support/Scene.h"

namespace scene {
namespace {

using Calls = std::map<std::uint64_t, std::string>;

const Calls changing = {
#ifdef SYS_mkdir
    {SYS_mkdir, "mkdir"},       {SYS_rename, "rename"},       {SYS_unlink, "unlink"},
    {SYS_rmdir, "rmdir"},       {SYS_link, "link"},           {SYS_symlink, "symlink"},
    {SYS_creat, "creat"},       {SYS_chmod, "chmod"},
#endif
#ifdef SYS_renameat
    {SYS_renameat, "renameat"},
#endif
    {SYS_mkdirat, "mkdirat"},   {SYS_renameat2, "renameat2"}, {SYS_unlinkat, "unlinkat"},
    {SYS_linkat, "linkat"},     {SYS_symlinkat, "symlinkat"}, {SYS_ftruncate, "ftruncate"},
    {SYS_truncate, "truncate"}, {SYS_fchmodat, "fchmodat"},   {SYS_fchmod, "fchmod"},
    {SYS_pwrite64, "pwrite"},
};

bool makesFile(std::uint64_t flags) {
  return (flags & (O_CREAT | O_TRUNC)) != 0;
}

/// The name of the call if it changes something, else empty.
std::string changingCall(const __ptrace_syscall_info& info) {
  if (const auto found = changing.find(info.entry.nr); found != changing.end()) return found->second;
#ifdef SYS_open
  if (info.entry.nr == SYS_open && makesFile(info.entry.args[1])) return "open";
#endif
  if (info.entry.nr == SYS_openat && makesFile(info.entry.args[2])) return "openat";
  return {};
}

[[noreturn]] void becomeTraced(std::vector<std::string> command) {
  becomeOrdinary();
  const int nothing = ::open("/dev/null", O_RDWR);
  for (const int stream : {0, 1, 2}) ::dup2(nothing, stream);
  std::vector<char*> words;
  for (std::string& word : command) words.push_back(word.data());
  words.push_back(nullptr);
  if (::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) std::_Exit(126);
  ::raise(SIGSTOP);
  // A leak can't be looked for in a process that is traced, and the attempt would count as a failure.
  ::setenv("ASAN_OPTIONS", "detect_leaks=0", 1);
  ::execvp(words[0], words.data());
  std::_Exit(127);
}

int reap(pid_t process) {
  int status = 0;
  while (::waitpid(process, &status, 0) < 0 && errno == EINTR) continue;
  return status;
}

KilledRun kill(pid_t process, std::string call) {
  ::kill(process, SIGKILL);
  int status = reap(process);
  while (!WIFSIGNALED(status) && !WIFEXITED(status)) status = reap(process);
  return {true, -SIGKILL, std::move(call)};
}

/// Follows a stopped program until its n-th changing call.
std::optional<KilledRun> follow(pid_t process, int n) {
  int passedOn = 0;
  int count = 0;
  for (;;) {
    if (::ptrace(PTRACE_SYSCALL, process, nullptr, passedOn) != 0) return std::nullopt;
    const int status = reap(process);
    if (WIFEXITED(status)) return KilledRun{false, WEXITSTATUS(status), {}};
    if (WIFSIGNALED(status)) return KilledRun{false, -WTERMSIG(status), {}};
    const bool isCall = WSTOPSIG(status) == (SIGTRAP | 0x80);
    const bool isExec = status >> 8 == (SIGTRAP | (PTRACE_EVENT_EXEC << 8));
    passedOn = isCall || isExec ? 0 : WSTOPSIG(status);
    if (!isCall) continue;
    __ptrace_syscall_info info{};
    if (::ptrace(static_cast<__ptrace_request>(PTRACE_GET_SYSCALL_INFO), process, sizeof info, &info) <= 0) {
      return std::nullopt;
    }
    if (info.op != PTRACE_SYSCALL_INFO_ENTRY) continue;
    std::string call = changingCall(info);
    if (!call.empty() && ++count == n) return kill(process, std::move(call));
  }
}

}  // namespace

std::optional<KilledRun> killedAt(int n, const std::vector<std::string>& command) {
  const pid_t process = ::fork();
  if (process < 0) return std::nullopt;
  if (process == 0) becomeTraced(command);
  if (!WIFSTOPPED(reap(process))) return std::nullopt;
  const long options = PTRACE_O_TRACESYSGOOD | PTRACE_O_TRACEEXEC | PTRACE_O_EXITKILL;
  if (::ptrace(PTRACE_SETOPTIONS, process, nullptr, options) == 0) {
    if (auto run = follow(process, n)) return run;
  }
  ::kill(process, SIGKILL);
  reap(process);
  return std::nullopt;
}

std::string whyNotTraced() {
  if (!hasMounts()) return "this room traces its processes itself, and a process has one tracer only";
  const auto run = killedAt(1, {"/bin/true"});
  return run && run->status == 0 ? ""
                                 : std::string("processes can't be traced here: ") + std::strerror(errno);
}

}  // namespace scene
