#include "Platform/posix/ExclusiveRename.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>

namespace quarn {
namespace {

// FAT and network volumes don't know the exclusive rename (rename(2): ENOTSUP), nor do some third parties'.
bool isUnsupported(int errnoValue) {
  return errnoValue == ENOTSUP || errnoValue == EOPNOTSUPP || errnoValue == EINVAL || errnoValue == ENOSYS;
}

}  // namespace

int renameExclusively(int sourceFolder, const char* source, int destinationFolder, const char* destination) {
  if (::renameatx_np(sourceFolder, source, destinationFolder, destination, RENAME_EXCL) == 0) return 0;
  if (!isUnsupported(errno)) return errno;
  struct stat status;
  if (::fstatat(destinationFolder, destination, &status, AT_SYMLINK_NOFOLLOW) == 0) return EEXIST;
  return ::renameat(sourceFolder, source, destinationFolder, destination) == 0 ? 0 : errno;
}

}  // namespace quarn
