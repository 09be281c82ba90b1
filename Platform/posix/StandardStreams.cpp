#include "Platform/posix/StandardStreams.h"

#include <fcntl.h>
#include <unistd.h>

namespace quarn {

void ensureStandardStreams() {
  for (int number = STDIN_FILENO; number <= STDERR_FILENO; ++number) {
    // The lowest free number is the one that is closed.
    if (::fcntl(number, F_GETFD) < 0) ::open("/dev/null", O_RDWR);
  }
}

}  // namespace quarn
