#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

#include "Platform/posix/FileOperations.h"
#include "Platform/posix/PathAt.h"
#include "Platform/system/SystemCalls.h"

namespace quarn {
namespace {

// O_NONBLOCK: opening a FIFO must not wait for a writer.
constexpr int looking = O_RDONLY | O_NONBLOCK | O_NOFOLLOW;

/// Returns whether the volume doesn't support flushing. Drivers report this differently: on a Mac, a drive
/// formatted as exFAT returns ENOTTY and an SMB share ENOTSUP.
bool isUnsupported(int errnoValue) {
  return errnoValue == ENOTSUP || errnoValue == EOPNOTSUPP || errnoValue == ENOTTY || errnoValue == EINVAL ||
         errnoValue == ENOSYS;
}

int syncItem(int item) {
  return ::fsync(item) == 0 || isUnsupported(errno) ? 0 : errno;
}

}  // namespace

int flushVolume(const Path& item) {
  Descriptor onVolume = openAt(item, looking);
  // A link, a socket or an unreadable file can't be opened. The folder that holds it lies on the same volume.
  if (!onVolume.isOpen()) onVolume = openAt(item.parent(), looking);
  if (onVolume.isOpen()) {
    const int error = syncVolume(onVolume.number());
    return isUnsupported(error) ? syncItem(onVolume.number()) : error;
  }
  // If neither may be read, sync(2) still writes out every volume, but reports no failure.
  if (errno != EACCES) return errno;
  ::sync();
  return 0;
}

}  // namespace quarn
