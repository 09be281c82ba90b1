#include "Platform/posix/VolumeSync.h"

#include <unistd.h>

namespace quarn {

int syncVolume(int item) {
  // Plain syncing stops at the drive's own memory; this waits for its platters or cells. Without WAIT the
  // medium isn't flushed at all. The answer is the error number itself, and `errno` stays as it was
  // (sync_volume_np(3)).
  return ::fsync_volume_np(item, SYNC_VOLUME_FULLSYNC | SYNC_VOLUME_WAIT);
}

}  // namespace quarn
