#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

#include "Platform/CocoaError.h"
#include "Platform/FittingName.h"
#include "Platform/linux/LinuxPlatform.h"
#include "Platform/linux/TrashFolder.h"
#include "Platform/posix/FileOperations.h"
#include "Platform/posix/PathAt.h"
#include "Platform/posix/ResolvedPath.h"
#include "Platform/system/SystemCalls.h"

namespace quarn {
namespace {

/// Returns a name such as "name 2.ext".
std::string numbered(const Path& item, int number) {
  const std::string extension = item.extension();
  return FittingName::of(item.nameWithoutExtension(),
                         " " + std::to_string(number) + (extension.empty() ? "" : "." + extension));
}

PlatformError trashError(int errnoValue, const Path& item) {
  // EROFS, EXDEV and the like mean that this volume can't have a Trash. Any other error is reported as it is.
  const bool hasNone = errnoValue == EROFS || errnoValue == EXDEV || errnoValue == ENOTSUP ||
                       errnoValue == ENOTDIR || errnoValue == ELOOP;
  if (hasNone) return CocoaError::noTrash(item, volumeName(item));
  return CocoaError::fromErrno(CocoaError::Operation::trash, errnoValue, item);
}

}  // namespace

Result<Path> LinuxTrash::moveToTrash(const Path& item) {
  const PathAt at(item);
  struct stat status;
  if (at.error()) return trashError(at.error(), item);
  if (::fstatat(at.folder(), at.name(), &status, AT_SYMLINK_NOFOLLOW) != 0) {
    // A component of the path that isn't a folder means that the item doesn't exist.
    return trashError(errno == ENOTDIR ? ENOENT : errno, item);
  }
  const TrashFolder trash = TrashFolder::forItemsIn(withParentResolved(item).parent(), places_.home());
  if (trash.error) return trashError(trash.error, item);
  std::string name = item.lastComponent();
  int error = renameExclusively(at.folder(), at.name(), trash.descriptor.number(), name.c_str());
  // The rename itself detects that a name is taken, so two programs can't choose the same one.
  for (int number = 2; error == EEXIST; ++number) {
    name = numbered(item, number);
    error = renameExclusively(at.folder(), at.name(), trash.descriptor.number(), name.c_str());
  }
  if (error) return trashError(error, item);
  return trash.path.appending(name);
}

}  // namespace quarn
