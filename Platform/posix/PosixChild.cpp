#include "Platform/posix/PosixChild.h"

#include <cerrno>
#include <signal.h>
#include <sys/wait.h>

#include "Platform/posix/PipeReader.h"

namespace quarn {
namespace {

// How long it may take to notice that a tool has ended while another process still holds its pipe.
constexpr std::chrono::milliseconds pollInterval{20};

// Not zero, so that it counts as a failure.
constexpr int lostStatus = 255;

/// A signal is reported by its plain number, without the 128 that a shell adds.
int exitStatus(int waitStatus) {
  return WIFSIGNALED(waitStatus) ? WTERMSIG(waitStatus) : WEXITSTATUS(waitStatus);
}

}  // namespace

PosixChild::PosixChild(pid_t process, Descriptor output, Descriptor error)
    : process_(process), output_(std::move(output)), error_(std::move(error)) {}

PosixChild::~PosixChild() {
  // Collects the status if the tool has ended. A tool that is still running is left alone.
  isRunning();
}

bool PosixChild::collect() {
  if (status_) return true;
  int waitStatus = 0;
  pid_t found;
  do found = ::waitpid(process_, &waitStatus, WNOHANG);
  while (found < 0 && errno == EINTR);
  if (found == 0) return false;
  // Another wait in this process has collected the status. A run that isn't known to have succeeded counts as
  // failed.
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
    // WNOWAIT leaves the status to be collected, so that the lock is free for a signal while this waits
    // (waitid(2)).
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
  // Once the status is collected the identifier may belong to another process.
  const std::lock_guard guard(lock_);
  if (!collect()) ::kill(process_, number);
}

void PosixChild::readToEnd(const OutputSink& output, const OutputSink& error) {
  PipeReader reader({{output_, output}, {error_, error}});
  while (reader.hasOpen()) reader.readSome(std::nullopt);
}

void PosixChild::readUntilExit(const OutputSink& output, const OutputSink& error) {
  PipeReader reader({{output_, output}, {error_, error}});
  // A grandchild that inherited the pipes may keep them open long after the tool itself has ended.
  while (reader.hasOpen() && isRunning()) reader.readSome(pollInterval);
  waitForExit();
  // What the tool wrote just before it ended is still in the pipes.
  reader.readWaiting();
}

}  // namespace quarn
