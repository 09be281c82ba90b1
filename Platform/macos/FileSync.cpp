#include "Platform/posix/FileSync.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace quarn {

int syncFile(int file) {
  // fsync(2) stops at the drive's own memory, and the drive may write out the rename before the content. A
  // barrier keeps the order; only some volumes know it (fcntl(2)).
  if (::fcntl(file, F_BARRIERFSYNC) == 0) return 0;
  return ::fsync(file) == 0 ? 0 : errno;
}

}  // namespace quarn
