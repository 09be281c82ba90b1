#include "Supervisor.h"

#include <cerrno>
#include <cstring>
#include <signal.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Keeper.h"
#include "Platform/posix/Descriptor.h"
#include "Signals.h"

namespace quarn::room::Supervisor {

namespace {

// A shell in the room makes itself the terminal's foreground; the caller expects it back.
class Foreground {
 public:
  Foreground() : isOurs_(::tcgetpgrp(STDIN_FILENO) == ::getpgrp()) {}
  Foreground(const Foreground&) = delete;
  Foreground& operator=(const Foreground&) = delete;
  ~Foreground() {
    if (!isOurs_) return;
    const auto before = ::signal(SIGTTOU, SIG_IGN);
    ::tcsetpgrp(STDIN_FILENO, ::getpgrp());
    ::signal(SIGTTOU, before);
  }

 private:
  bool isOurs_;
};

int waitFor(pid_t keeper) {
  while (true) {
    const Signals::Arrival arrival = Signals::next();
    int raw = 0;
    if (arrival.number == SIGCHLD) {
      if (::waitpid(keeper, &raw, WNOHANG) == keeper)
        return WIFSIGNALED(raw) ? 128 + WTERMSIG(raw) : WEXITSTATUS(raw);
    } else if (arrival.sentByProcess && arrival.number != SIGUSR2) {
      ::kill(keeper, arrival.number);
    }
  }
}

}  // namespace

Outcome run(const RoomKind& kind) {
  const Foreground foreground;
  Signals::hold();
  Pipe readiness = Pipe::make();
  if (!readiness.reading.isOpen()) return {false, 0, std::strerror(errno)};
  const auto keeper = static_cast<pid_t>(::syscall(SYS_clone, kind.namespaces | SIGCHLD, 0, 0, 0, 0));
  if (keeper < 0) return {false, 0, std::strerror(errno)};
  if (keeper == 0) {
    readiness.reading.close();
    ::_exit(Keeper::keep(kind, std::move(readiness.writing)));
  }
  readiness.writing.close();
  const std::string reason = readAll(readiness.reading);
  const int status = waitFor(keeper);
  if (reason.empty()) return {true, status, ""};
  return {false, 0, reason};
}

}  // namespace quarn::room::Supervisor
