#include <cerrno>
#include <signal.h>
#include <unistd.h>

#include "Platform/CocoaError.h"
#include "Platform/posix/Descriptor.h"
#include "Platform/posix/PosixChild.h"
#include "Platform/posix/PosixPlatform.h"
#include "Platform/posix/Spawn.h"
#include "Platform/system/SystemCalls.h"

namespace quarn {

namespace {

/// Restores the default action of SIGCHLD if the program that started us ignored it. Ignored signals are
/// inherited, and the kernel then discards the exit status of children (waitpid(2)).
void mindEndsOfChildren() {
  struct sigaction action {};
  if (::sigaction(SIGCHLD, nullptr, &action) == 0 && action.sa_handler == SIG_IGN) ::signal(SIGCHLD, SIG_DFL);
}

/// Tells apart why a tool couldn't be started: the tool may well exist, but the system may lack a process or
/// memory, or be unable to pass on the arguments.
PlatformError notStarted(const Path& executable, int errnoValue) {
  for (const int otherReason : {EMFILE, ENFILE, EAGAIN, ENOMEM, E2BIG, EINVAL}) {
    if (errnoValue == otherReason) return CocoaError::outOfResources(errnoValue);
  }
  return CocoaError::toolNotStarted(executable);
}

}  // namespace

Result<std::unique_ptr<Child>> PosixProcesses::start(const Path& executable,
                                                     const std::vector<std::string>& arguments,
                                                     OutputStreams streams) {
  mindEndsOfChildren();
  Pipe output, error;
  if (streams != OutputStreams::inherited) output = Pipe::make();
  if (streams == OutputStreams::separate) error = Pipe::make();
  const int errorTarget = streams == OutputStreams::joined ? output.writing.number() : error.writing.number();
  pid_t process = 0;
  const bool hasPipes = (streams == OutputStreams::inherited || output.writing.isOpen()) &&
                        (streams != OutputStreams::separate || error.writing.isOpen());
  // A missing pipe means that no descriptors are left.
  if (!hasPipes) return notStarted(executable, EMFILE);
  if (const int failure = spawn(executable, arguments, output.writing.number(), errorTarget, process))
    return notStarted(executable, failure);
  return std::unique_ptr<Child>(
      std::make_unique<PosixChild>(process, std::move(output.reading), std::move(error.reading)));
}

std::vector<int> PosixProcesses::lineage() const {
  std::vector<int> processes;
  for (int process = ::getpid(); process > 0; process = parentOf(process)) processes.push_back(process);
  return processes;
}

}  // namespace quarn
