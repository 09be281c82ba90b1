#include "Platform/posix/VolumeFlush.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

#include "Platform/posix/PathAt.h"
#include "Platform/system/SystemCalls.h"

namespace quarn {
namespace {

constexpr int looking = O_RDONLY | O_NONBLOCK | O_NOFOLLOW;

/// Which volumes can't be asked as a whole, and how they say so, differs from one driver to the next: a
/// disk formatted as exFAT answers ENOTTY on a Mac, a network volume ENOTSUP.
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
  // A link, a socket or a file that may not be read doesn't open; the folder that holds it stands on the
  // same volume.
  if (!onVolume.isOpen()) onVolume = openAt(item.parent(), looking);
  if (onVolume.isOpen()) {
    const int error = syncVolume(onVolume.number());
    return isUnsupported(error) ? syncItem(onVolume.number()) : error;
  }
  if (errno != EACCES) return errno;
  ::sync();
  return 0;
}

}  // namespace quarn
