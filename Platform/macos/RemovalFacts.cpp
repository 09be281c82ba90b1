#include "Platform/posix/RemovalFacts.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quarn {
namespace {

/// Locked: what has one of these flags can't be removed, and a folder that has one loses no name, not even
/// to root (chflags(2), unlink(2)).
constexpr std::uint32_t locked = UF_IMMUTABLE | UF_APPEND | SF_IMMUTABLE | SF_APPEND;
/// The system's own items.
constexpr std::uint32_t kept = SF_NOUNLINK | SF_RESTRICTED;

/// What the lists of rights say, of the item and of its folder, as the kernel weighs them (sys/unistd.h).
/// Anything but a plain refusal tells nothing.
int refusalOfRights(int folder, const char* name, bool isLink) {
  const int flags = AT_EACCESS | (isLink ? AT_SYMLINK_NOFOLLOW : 0);
  if (::faccessat(folder, name, _DELETE_OK, flags) == 0) return 0;
  return errno == EACCES || errno == EPERM ? errno : 0;
}

}  // namespace

std::optional<RemovalFacts> removalFacts(int folder, const char* name) {
  struct stat status, parent;
  if (::fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) != 0) return std::nullopt;
  if (::fstat(folder, &parent) != 0) return std::nullopt;
  RemovalFacts facts;
  facts.isFolder = S_ISDIR(status.st_mode);
  facts.owner = status.st_uid;
  facts.isMountPoint = facts.isFolder && status.st_dev != parent.st_dev;
  const bool isLocked = (status.st_flags & (locked | kept)) != 0 || (parent.st_flags & locked) != 0;
  facts.refusal = isLocked ? EPERM : refusalOfRights(folder, name, S_ISLNK(status.st_mode));
  return facts;
}

}  // namespace quarn
