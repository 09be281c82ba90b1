#include "Platform/posix/ExclusiveRename.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace quarn {
namespace {

constexpr unsigned noReplace = 1;  // RENAME_NOREPLACE

// Not every file system knows the exclusive rename, and a tracer that translates paths may refuse a call
// that it doesn't know.
bool isUnsupported(int errnoValue) {
  return errnoValue == EINVAL || errnoValue == ENOSYS;
}

}  // namespace

int renameExclusively(int sourceFolder, const char* source, int destinationFolder, const char* destination) {
  if (::syscall(SYS_renameat2, sourceFolder, source, destinationFolder, destination, noReplace) == 0)
    return 0;
  if (!isUnsupported(errno)) return errno;
  struct stat status;
  if (::fstatat(destinationFolder, destination, &status, AT_SYMLINK_NOFOLLOW) == 0) return EEXIST;
  return ::renameat(sourceFolder, source, destinationFolder, destination) == 0 ? 0 : errno;
}

}  // namespace quarn
