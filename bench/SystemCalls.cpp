#include "bench/SystemCalls.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

namespace bench {
namespace {

[[noreturn]] void becomeTraced(Command command) {
  std::vector<char*> words;
  for (std::string& word : command) words.push_back(word.data());
  words.push_back(nullptr);
  ::dup2(::open("/dev/null", O_WRONLY | O_CLOEXEC), 1);
  if (::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) std::_Exit(126);
  ::execvp(words[0], words.data());
  std::_Exit(127);
}

/// Lets a stopped process go on to where it enters a system call or comes back from one. Returns how it
/// stopped or ended, as waitpid(2) tells it.
int next(pid_t process, int signal) {
  int status = 0;
  ::ptrace(PTRACE_SYSCALL, process, nullptr, signal);
  ::waitpid(process, &status, 0);
  return status;
}

}  // namespace

long systemCalls(const Command& command) {
  const pid_t process = ::fork();
  if (process == 0) becomeTraced(command);
  int status = 0;
  // The first stop is that of the program that has just been started.
  ::waitpid(process, &status, 0);
  // This tells the stops at system calls from those at signals.
  ::ptrace(PTRACE_SETOPTIONS, process, nullptr, PTRACE_O_TRACESYSGOOD);
  long stops = 0;
  for (int signal = 0; WIFSTOPPED(status);) {
    status = next(process, signal);
    const bool isCall = WIFSTOPPED(status) && WSTOPSIG(status) == (SIGTRAP | 0x80);
    if (isCall) ++stops;
    signal = isCall || !WIFSTOPPED(status) ? 0 : WSTOPSIG(status);
  }
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
    std::fprintf(stderr, "bench: %s can't be traced, or failed\n", command[0].c_str());
    std::exit(1);
  }
  // Each call stops the program twice, but the last one, which ends the program, only once.
  return (stops + 1) / 2;
}

}  // namespace bench
