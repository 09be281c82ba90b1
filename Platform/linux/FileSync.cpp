#include "Platform/posix/FileSync.h"

#include <cerrno>
#include <unistd.h>

namespace quarn {

int syncFile(int file) {
  return ::fsync(file) == 0 ? 0 : errno;
}

}  // namespace quarn
