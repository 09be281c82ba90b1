#include "Platform/posix/Pipe.h"

#include <fcntl.h>

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

}  // namespace quarn
