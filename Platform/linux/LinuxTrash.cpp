#include "Platform/linux/LinuxTrash.h"

#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <sys/stat.h>

#include "Platform/CocoaError.h"
#include "Platform/linux/TrashFolder.h"
#include "Platform/posix/ExclusiveRename.h"
#include "Platform/posix/PathAt.h"
#include "Platform/posix/ResolvedPath.h"
#include "Platform/system/SystemCalls.h"

namespace quarn {
namespace {

/// Cut so that at most `longest` bytes stay, and no character is cut in two.
std::string shortened(std::string text, std::size_t longest) {
  if (text.size() <= longest) return text;
  while (longest > 0 && (static_cast<unsigned char>(text[longest]) & 0xC0) == 0x80) --longest;
  text.resize(longest);
  return text;
}

/// "name 2.ext" for 2.
std::string numbered(const Path& item, int number) {
  const std::string extension = item.extension();
  const std::string ending = " " + std::to_string(number) + (extension.empty() ? "" : "." + extension);
  const std::size_t room = ending.size() < NAME_MAX ? NAME_MAX - ending.size() : 0;
  return shortened(item.nameWithoutExtension(), room) + ending;
}

PlatformError trashError(int errnoValue, const Path& item) {
  // A volume that can't be written, or that ends here, has no Trash; everything else is told as it is.
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
    // The way to it being no folder is one more way of not being there.
    return trashError(errno == ENOTDIR ? ENOENT : errno, item);
  }
  const TrashFolder trash = TrashFolder::forItemsIn(withParentResolved(item).parent(), places_.home());
  if (trash.error) return trashError(trash.error, item);
  std::string name = item.lastComponent();
  int error = renameExclusively(at.folder(), at.name(), trash.descriptor.number(), name.c_str());
  for (int number = 2; error == EEXIST; ++number) {
    name = numbered(item, number);
    error = renameExclusively(at.folder(), at.name(), trash.descriptor.number(), name.c_str());
  }
  if (error) return trashError(error, item);
  return trash.path.appending(name);
}

}  // namespace quarn
