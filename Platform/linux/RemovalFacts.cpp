#include "Platform/posix/RemovalFacts.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

namespace quarn {
namespace {

constexpr std::uint64_t locked = STATX_ATTR_IMMUTABLE | STATX_ATTR_APPEND;

}  // namespace

std::optional<RemovalFacts> removalFacts(int folder, const char* name) {
  struct statx status;
  const int flags = AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT;
  if (::statx(folder, name, flags, STATX_TYPE | STATX_MODE | STATX_UID, &status) != 0) return std::nullopt;
  RemovalFacts facts;
  facts.isFolder = S_ISDIR(status.stx_mode);
  facts.owner = status.stx_uid;
  facts.isMountPoint = (status.stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0;
  // Such an item can't be removed by anybody, and a folder of the kind loses no name (ioctl_iflags(2)).
  facts.refusal = (status.stx_attributes & locked) != 0 ? EPERM : 0;
  return facts;
}

}  // namespace quarn
