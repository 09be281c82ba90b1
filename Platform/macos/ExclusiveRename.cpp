#include "Platform/posix/ExclusiveRename.h"

#include <cerrno>
#include <cstdio>

namespace quarn {

int exclusiveRenameCall(int sourceFolder, const char* source, int destinationFolder,
                        const char* destination) {
  const int result = ::renameatx_np(sourceFolder, source, destinationFolder, destination, RENAME_EXCL);
  return result == 0 ? 0 : errno;
}

}  // namespace quarn
