#include "Platform/posix/MountBoundary.h"

#include <sys/stat.h>

namespace quarn {

bool isMountedOver(dev_t device, int folder) {
  struct stat status;
  // The two volumes of the startup disk share one device number, but no tree of ours holds the places where
  // they meet, which lie in the root folder.
  return ::fstat(folder, &status) != 0 || status.st_dev != device;
}

}  // namespace quarn
