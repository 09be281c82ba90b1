#include "Keeper.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <optional>
#include <poll.h>
#include <sched.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "ChildProcesses.h"
#include "Rights.h"
#include "Signals.h"
#include "Sys.h"

namespace quarn::room::Keeper {

namespace {

// What the kernel sends when the process that made the room has ended.
const int makerEnded = SIGUSR2;

std::vector<char*> pointers(const std::vector<std::string>& texts) {
  std::vector<char*> all;
  for (const std::string& text : texts) all.push_back(const_cast<char*>(text.c_str()));
  all.push_back(nullptr);
  return all;
}

[[noreturn]] void become(const Launch& launch) {
  Signals::backToDefault();
  const auto words = pointers(launch.words);
  auto environment = pointers(launch.environment);
  if (!launch.cwd.empty() && ::chdir(launch.cwd.c_str()) != 0) {
    std::cerr << "quarn-room: " << launch.cwd << ": " << std::strerror(errno) << "\n";
    ::_exit(125);
  }
  if (!launch.keepRights) Rights::becomeOrdinary();
  // execvp(3) searches the PATH of the calling process.
  environ = environment.data();
  ::execvp(words[0], words.data());
  const int why = errno;
  std::cerr << "quarn-room: " << launch.words[0] << ": " << std::strerror(why) << "\n";
  ::_exit(why == ENOENT ? 127 : 126);
}

pid_t start(const Launch& launch) {
  const pid_t command = check(::fork(), "fork");
  if (command == 0) become(launch);
  return command;
}

std::optional<int> reap(pid_t command) {
  std::optional<int> status;
  int raw = 0;
  for (pid_t ended = 0; (ended = ::waitpid(-1, &raw, WNOHANG)) > 0;)
    if (ended == command) status = WIFSIGNALED(raw) ? 128 + WTERMSIG(raw) : WEXITSTATUS(raw);
  return status;
}

void passOn(const Launch& launch, pid_t command, int number) {
  if (!launch.throughTracer) {
    ::kill(command, number);
    return;
  }
  for (const pid_t child : ChildProcesses::of(command)) ::kill(child, number);
}

int waitFor(const Launch& launch, pid_t command) {
  while (true) {
    const Signals::Arrival arrival = Signals::next();
    if (arrival.number == SIGCHLD) {
      if (auto status = reap(command)) return *status;
    } else if (arrival.number == makerEnded) {
      return 128 + SIGKILL;
    } else if (arrival.sentByProcess) {
      passOn(launch, command, arrival.number);
    }
  }
}

void followTheMaker(bool firstOfNamespace, const Descriptor& readiness) {
  ::prctl(PR_SET_PDEATHSIG, firstOfNamespace ? SIGKILL : makerEnded);
  ::prctl(PR_SET_CHILD_SUBREAPER, 1);
  // It may have ended before the kernel was asked to tell.
  pollfd itsEnd{readiness.number(), 0, 0};
  if (::poll(&itsEnd, 1, 0) > 0) ::_exit(128 + SIGKILL);
}

int live(const RoomKind& kind, Descriptor& readiness) {
  std::optional<Launch> launch;
  try {
    launch = kind.enter();
  } catch (const std::exception& error) {
    const std::string reason = error.what();
    if (::write(readiness.number(), reason.data(), reason.size()) < 0) return 126;
    return 125;
  }
  const pid_t command = start(*launch);
  readiness.close();
  const int status = waitFor(*launch, command);
  ChildProcesses::endAll(launch->throughTracer ? command : -1);
  return status;
}

}  // namespace

int keep(const RoomKind& kind, Descriptor readiness) {
  followTheMaker((kind.namespaces & CLONE_NEWPID) != 0, readiness);
  return live(kind, readiness);
}

int keepInside(const std::vector<std::string>& command) {
  Signals::hold();
  ::prctl(PR_SET_CHILD_SUBREAPER, 1);
  Launch launch;
  launch.words = command;
  launch.keepRights = true;  // what was to go went before the tracer started
  Rights::hideCallsUnknownToTracers();
  for (char** variable = environ; *variable != nullptr; ++variable)
    launch.environment.emplace_back(*variable);
  const int status = waitFor(launch, start(launch));
  ChildProcesses::endAll();
  return status;
}

}  // namespace quarn::room::Keeper
