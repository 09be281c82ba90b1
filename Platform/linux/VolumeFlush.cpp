#include "Platform/posix/VolumeFlush.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

#include "Platform/posix/PathAt.h"

namespace quarn {
namespace {

Descriptor open(const Path& item) {
  const PathAt at(item);
  if (at.error()) return {};
  return Descriptor(::openat(at.folder(), at.name(), O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC));
}

}  // namespace

int flushVolume(const Path& item) {
  // A link and a file that may not be read don't open. The folder that holds them stands on the same
  // volume, but the one that holds a mount point doesn't.
  Descriptor onVolume = open(item);
  if (!onVolume.isOpen()) onVolume = open(item.parent());
  if (onVolume.isOpen()) return ::syncfs(onVolume.number()) == 0 ? 0 : errno;
  if (errno != EACCES) return errno;
  ::sync();
  return 0;
}

}  // namespace quarn
