#include "Platform/posix/ItemAttributes.h"

#include <fcntl.h>

#include "Platform/posix/Status.h"

namespace quarn {

std::optional<FileAttributes> itemAttributes(int folder, const char* name) {
  struct stat status;
  if (::fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) != 0) return std::nullopt;
  return attributesFrom(status);
}

}  // namespace quarn
