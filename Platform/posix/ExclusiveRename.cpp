#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>

#include "Platform/posix/FileOperations.h"
#include "Platform/system/SystemCalls.h"

namespace quarn {
namespace {

/// Not every volume supports an exclusive rename: on a Mac, FAT and network volumes return ENOTSUP, and on
/// Linux some file systems return EINVAL (rename(2) of both). A tracer that translates paths may return
/// ENOSYS for a call that it doesn't know.
bool isUnsupported(int errnoValue) {
  return errnoValue == ENOTSUP || errnoValue == EOPNOTSUPP || errnoValue == EINVAL || errnoValue == ENOSYS;
}

}  // namespace

int renameExclusively(int sourceFolder, const char* source, int destinationFolder, const char* destination) {
  const int error = exclusiveRenameCall(sourceFolder, source, destinationFolder, destination);
  if (!isUnsupported(error)) return error;
  struct stat status;
  if (::fstatat(destinationFolder, destination, &status, AT_SYMLINK_NOFOLLOW) == 0) return EEXIST;
  return ::renameat(sourceFolder, source, destinationFolder, destination) == 0 ? 0 : errno;
}

}  // namespace quarn
