#include "Platform/posix/Descriptor.h"

#include <fcntl.h>
#include <unistd.h>

namespace quarn {

Pipe Pipe::make() {
  int ends[2];
#ifdef __linux__
  if (::pipe2(ends, O_CLOEXEC) != 0) return {};
#else
  if (::pipe(ends) != 0) return {};
  for (const int end : ends) ::fcntl(end, F_SETFD, FD_CLOEXEC);
#endif
  return {Descriptor(ends[0]), Descriptor(ends[1])};
}

void ensureStandardStreams() {
  for (int number = STDIN_FILENO; number <= STDERR_FILENO; ++number) {
    // The lowest free number is the one that is closed.
    if (::fcntl(number, F_GETFD) < 0) ::open("/dev/null", O_RDWR);
  }
}

}  // namespace quarn
