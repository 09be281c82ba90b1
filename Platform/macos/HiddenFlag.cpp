#include "Platform/posix/HiddenFlag.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace quarn {

bool hasHiddenFlag(int folder, const char* name) {
  struct stat status;
  return ::fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) == 0 && (status.st_flags & UF_HIDDEN) != 0;
}

}  // namespace quarn
