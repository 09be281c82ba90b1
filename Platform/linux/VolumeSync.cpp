#include "Platform/posix/VolumeSync.h"

#include <cerrno>
#include <unistd.h>

namespace quarn {

int syncVolume(int item) {
  return ::syncfs(item) == 0 ? 0 : errno;
}

}  // namespace quarn
