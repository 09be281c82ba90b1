#include "Platform/posix/VolumeFlush.h"

#include <cerrno>
#include <unistd.h>

namespace quarn {

int flushVolume(const Path& item) {
  // Plain syncing stops at the drive's own memory; this waits for its platters or cells. A file system
  // that can't do it, such as a network volume, is left to its server.
  const int flags = SYNC_VOLUME_FULLSYNC | SYNC_VOLUME_WAIT;
  if (::sync_volume_np(item.text().c_str(), flags) == 0 || errno == ENOTSUP) return 0;
  return errno;
}

}  // namespace quarn
