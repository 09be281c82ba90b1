#include "Platform/posix/MountBoundary.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace quarn {

bool isMountedOver(dev_t device, int folder) {
  struct stat status;
  if (::fstat(folder, &status) != 0 || status.st_dev != device) return true;
  // A part of the same volume that is mounted a second time has its device too (statx(2)).
  struct statx more;
  return ::statx(folder, "", AT_EMPTY_PATH, 0, &more) == 0 &&
         (more.stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0;
}

}  // namespace quarn
