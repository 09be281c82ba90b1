#include "Platform/posix/ExclusiveRename.h"

#include <cerrno>
#include <sys/syscall.h>
#include <unistd.h>

namespace quarn {
namespace {

constexpr unsigned noReplace = 1;  // RENAME_NOREPLACE

}  // namespace

int exclusiveRenameCall(int sourceFolder, const char* source, int destinationFolder,
                        const char* destination) {
  const long result =
      ::syscall(SYS_renameat2, sourceFolder, source, destinationFolder, destination, noReplace);
  return result == 0 ? 0 : errno;
}

}  // namespace quarn
