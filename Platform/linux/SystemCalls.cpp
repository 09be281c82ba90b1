#include "Platform/system/SystemCalls.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "Platform/linux/MountTable.h"
#include "Platform/posix/PathAt.h"
#include "Platform/posix/ResolvedPath.h"
#include "Platform/posix/Status.h"

namespace quarn {
namespace {

// The attributes that chattr(1) calls immutable and append-only.
constexpr std::uint64_t locked = STATX_ATTR_IMMUTABLE | STATX_ATTR_APPEND;

constexpr unsigned noReplace = 1;  // RENAME_NOREPLACE (rename(2))

}  // namespace

std::optional<FileAttributes> itemAttributes(int folder, const char* name) {
  struct stat status;
  if (::fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) != 0) return std::nullopt;
  FileAttributes attributes = attributesFrom(status);
  attributes.modified = momentFrom(status.st_mtim);
  return attributes;
}

bool hasHiddenFlag(int, const char*) {
  return false;
}

std::optional<RemovalFacts> removalFacts(int folder, const char* name) {
  struct statx status;
  // A look-up alone must not mount anything.
  const int flags = AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT;
  if (::statx(folder, name, flags, STATX_TYPE | STATX_MODE | STATX_UID, &status) != 0) return std::nullopt;
  RemovalFacts facts;
  facts.isFolder = S_ISDIR(status.stx_mode);
  facts.owner = status.stx_uid;
  facts.isMountPoint = (status.stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0;
  // Nobody can remove an item with one of these flags, and nothing can be removed from such a folder
  // (ioctl_iflags(2)).
  facts.refusal = (status.stx_attributes & locked) != 0 ? EPERM : 0;
  return facts;
}

bool isMountedOver(dev_t device, int folder) {
  struct stat status;
  if (::fstat(folder, &status) != 0 || status.st_dev != device) return true;
  // A bind mount shows part of the same volume, so its device number is the same. Only STATX_ATTR_MOUNT_ROOT
  // tells that it is a mount (statx(2)).
  struct statx more;
  return ::statx(folder, "", AT_EMPTY_PATH, 0, &more) == 0 &&
         (more.stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0;
}

int exclusiveRenameCall(int sourceFolder, const char* source, int destinationFolder,
                        const char* destination) {
  // Called by number, because not every C library has a function for it.
  const long result =
      ::syscall(SYS_renameat2, sourceFolder, source, destinationFolder, destination, noReplace);
  return result == 0 ? 0 : errno;
}

int syncFile(int file) {
  return ::fsync(file) == 0 ? 0 : errno;
}

int syncVolume(int item) {
  return ::syncfs(item) == 0 ? 0 : errno;
}

int parentOf(int process) {
  std::string line;
  if (readWhole(PathAt(Path("/proc/" + std::to_string(process) + "/stat")), line) != 0) return 0;
  // The second field is the name in parentheses, and the name may itself contain parentheses (/proc/pid/stat,
  // proc(5)). So the last ")" ends it.
  const std::size_t close = line.rfind(')');
  int parent = 0;
  if (close == std::string::npos || std::sscanf(line.c_str() + close, ") %*c %d", &parent) != 1) return 0;
  return parent;
}

std::string volumeName(const Path& path) {
  const auto found = MountTable::volumes();
  return MountTable::holding(found.value_or(std::vector<MountedVolume>{}), withParentResolved(path)).name();
}

}  // namespace quarn
