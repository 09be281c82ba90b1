#include "ChildProcesses.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Sys.h"

namespace quarn::room::ChildProcesses {

namespace {

// The name in the second field may hold anything, spaces and brackets too; the parent follows the state.
// See proc_pid_stat(5).
pid_t parentOf(const std::filesystem::path& process) {
  const Descriptor file(::open((process / "stat").c_str(), O_RDONLY | O_CLOEXEC));
  if (!file.isOpen()) return 0;
  const std::string line = readAll(file);
  const auto afterName = line.rfind(") ");
  return afterName == std::string::npos ? 0 : std::atoi(line.c_str() + afterName + 4);
}

}  // namespace

std::vector<pid_t> of(pid_t parent) {
  std::vector<pid_t> children;
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator("/proc", error)) {
    const int pid = std::atoi(entry.path().filename().c_str());
    if (pid > 0 && parentOf(entry.path()) == parent) children.push_back(pid);
  }
  return children;
}

// Orphans become children of this process, so killing and reaping its children until it has none ends all
// descendants. Those of the spared process become its children only when that has ended, and no wait tells
// when: hence the pause.
void endAll(pid_t spared) {
  while (true) {
    for (const pid_t child : of(spared)) ::kill(child, SIGKILL);
    for (const pid_t child : of(::getpid()))
      if (child != spared) ::kill(child, SIGKILL);
    pid_t reaped = 0;
    do {
      reaped = ::waitpid(-1, nullptr, WNOHANG);
    } while (reaped > 0);
    if (reaped < 0 && errno == ECHILD) return;
    ::usleep(1000);
  }
}

}  // namespace quarn::room::ChildProcesses
