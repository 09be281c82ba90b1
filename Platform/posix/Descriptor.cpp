#include "Platform/posix/Descriptor.h"

#include <fcntl.h>
#include <unistd.h>

#include "Platform/system/SpawnCalls.h"

namespace quarn {

Pipe Pipe::make() {
  int ends[2];
  if (!makePipe(ends)) return {};
  return {Descriptor(ends[0]), Descriptor(ends[1])};
}

void ensureStandardStreams() {
  for (int number = STDIN_FILENO; number <= STDERR_FILENO; ++number) {
    // open(2) returns the lowest free number, which is the closed stream: those below it are open by now.
    if (::fcntl(number, F_GETFD) < 0) ::open("/dev/null", O_RDWR);
  }
}

}  // namespace quarn
