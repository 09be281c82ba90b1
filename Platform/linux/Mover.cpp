#include "Platform/linux/Mover.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

#include "Platform/linux/ExclusiveRename.h"
#include "Platform/linux/TreeCopier.h"
#include "Platform/linux/TreeRemover.h"
#include "Platform/posix/VolumeFlush.h"

namespace quarn {
namespace {

bool isSame(const struct stat& a, const struct stat& b) {
  return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

/// Whether a folder lies in `source` or is it, by climbing to the root. Gives 0 or the reason why the
/// move can't be.
int checkNotInside(const struct stat& source, const Path& folder) {
  const PathAt at(folder);
  if (at.error()) return at.error();
  Descriptor current(::openat(at.folder(), at.name(), O_PATH | O_DIRECTORY | O_CLOEXEC));
  struct stat status, previous{};
  for (; current.isOpen(); previous = status) {
    if (::fstat(current.number(), &status) != 0) return errno;
    if (isSame(status, source)) return EINVAL;
    if (isSame(status, previous)) return 0;
    current = Descriptor(::openat(current.number(), "..", O_PATH | O_DIRECTORY | O_CLOEXEC));
  }
  // Above a folder that may not be searched nothing can be told, and nothing can be reached either.
  return errno == EACCES ? 0 : errno;
}

int moveAcrossVolumes(const PathAt& source, const PathAt& destination, const Path& destinationParent) {
  struct stat sourceStatus, status;
  if (::fstatat(source.folder(), source.name(), &sourceStatus, AT_SYMLINK_NOFOLLOW) != 0) return errno;
  if (::fstatat(destination.folder(), destination.name(), &status, AT_SYMLINK_NOFOLLOW) == 0) return EEXIST;
  if (const int error = checkNotInside(sourceStatus, destinationParent)) return error;
  if (const int error = copyTree(source, destination)) return error;
  // The source is the only copy until the other volume really holds the new one.
  if (const int error = flushVolume(destinationParent)) {
    removeTree(destination);
    return error;
  }
  return removeTree(source);
}

}  // namespace

int moveItem(const PathAt& source, const PathAt& destination, const Path& destinationParent) {
  if (source.error()) return source.error();
  if (destination.error()) return destination.error();
  const int error =
      renameExclusively(source.folder(), source.name(), destination.folder(), destination.name());
  return error == EXDEV ? moveAcrossVolumes(source, destination, destinationParent) : error;
}

}  // namespace quarn
