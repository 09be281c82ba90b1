#include "Platform/posix/PosixChild.h"

#include <cerrno>
#include <signal.h>
#include <sys/wait.h>

#include "Platform/posix/PipeReader.h"

namespace quarn {
namespace {

// How long a tool that has ended may go unnoticed while another process holds its pipe.
constexpr std::chrono::milliseconds pollInterval{20};

constexpr int lostStatus = 255;

int exitStatus(int waitStatus) {
  return WIFSIGNALED(waitStatus) ? WTERMSIG(waitStatus) : WEXITSTATUS(waitStatus);
}

}  // namespace

PosixChild::PosixChild(pid_t process, Descriptor output, Descriptor error)
    : process_(process), output_(std::move(output)), error_(std::move(error)) {}

PosixChild::~PosixChild() {
  isRunning();
}

bool PosixChild::collect() {
  if (status_) return true;
  int waitStatus = 0;
  pid_t found;
  do found = ::waitpid(process_, &waitStatus, WNOHANG);
  while (found < 0 && errno == EINTR);
  if (found == 0) return false;
  // Somebody else's wait took the status away. What isn't known to have gone well counts as failed.
  status_ = found == process_ ? exitStatus(waitStatus) : lostStatus;
  return true;
}

bool PosixChild::isRunning() {
  const std::lock_guard guard(lock_);
  return !collect();
}

int PosixChild::waitForExit() {
  for (;;) {
    {
      const std::lock_guard guard(lock_);
      if (collect()) return *status_;
    }
    // Waits without collecting, so that the lock stays free for a signal.
    siginfo_t information;
    ::waitid(P_PID, static_cast<id_t>(process_), &information, WEXITED | WNOWAIT);
  }
}

void PosixChild::terminate() {
  signal(SIGTERM);
}
void PosixChild::kill() {
  signal(SIGKILL);
}

void PosixChild::signal(int number) {
  const std::lock_guard guard(lock_);
  if (!collect()) ::kill(process_, number);
}

void PosixChild::readToEnd(const OutputSink& output, const OutputSink& error) {
  PipeReader reader({{output_, output}, {error_, error}});
  while (reader.hasOpen()) reader.readSome(std::nullopt);
}

void PosixChild::readUntilExit(const OutputSink& output, const OutputSink& error) {
  PipeReader reader({{output_, output}, {error_, error}});
  while (reader.hasOpen() && isRunning()) reader.readSome(pollInterval);
  waitForExit();
  reader.readWaiting();
}

}  // namespace quarn
