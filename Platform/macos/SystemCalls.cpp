#include "Platform/system/SystemCalls.h"

#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <fcntl.h>
#include <sys/attr.h>
#include <sys/stat.h>
#include <sys/sysctl.h>
#include <unistd.h>

#include "Platform/posix/Status.h"

namespace quarn {
namespace {

/// The answer of getattrlistat: its length, the set of returned attributes, then the attributes in the order
/// of their bits (getattrlist(2)).
struct __attribute__((packed)) Answer {
  std::uint32_t length;
  attribute_set_t told;
  off_t allForks;
  off_t dataFork;
};

/// Leaves the sizes absent if the volume doesn't report them.
void setAllocatedSizes(int folder, const char* name, FileAttributes& attributes) {
  attrlist question{};
  question.bitmapcount = ATTR_BIT_MAP_COUNT;
  question.commonattr = ATTR_CMN_RETURNED_ATTRS;
  question.fileattr = ATTR_FILE_ALLOCSIZE | ATTR_FILE_DATAALLOCSIZE;
  Answer answer{};
  attributes.totalAllocatedSize = attributes.allocatedSize = std::nullopt;
  // FSOPT_PACK_INVAL_ATTRS keeps the layout fixed: an attribute that isn't reported still takes its place.
  constexpr unsigned long options = FSOPT_NOFOLLOW | FSOPT_PACK_INVAL_ATTRS;
  if (::getattrlistat(folder, name, &question, &answer, sizeof answer, options) != 0) return;
  if (answer.told.fileattr & ATTR_FILE_ALLOCSIZE) attributes.totalAllocatedSize = answer.allForks;
  if (answer.told.fileattr & ATTR_FILE_DATAALLOCSIZE) attributes.allocatedSize = answer.dataFork;
}

/// Locked: an item with one of these flags can't be removed, and nothing can be removed from a folder with
/// one, not even by root (chflags(2), unlink(2)).
constexpr std::uint32_t locked = UF_IMMUTABLE | UF_APPEND | SF_IMMUTABLE | SF_APPEND;
/// The system's own items, which it protects by these flags.
constexpr std::uint32_t kept = SF_NOUNLINK | SF_RESTRICTED;

/// Returns the error with which the kernel would refuse to remove the item because of permissions, including
/// the access control lists of the item and its folder (_DELETE_OK, sys/unistd.h). Any other failure decides
/// nothing, so it returns 0.
int refusalOfRights(int folder, const char* name, bool isLink) {
  const int flags = AT_EACCESS | (isLink ? AT_SYMLINK_NOFOLLOW : 0);
  if (::faccessat(folder, name, _DELETE_OK, flags) == 0) return 0;
  return errno == EACCES || errno == EPERM ? errno : 0;
}

}  // namespace

std::optional<FileAttributes> itemAttributes(int folder, const char* name) {
  struct stat status;
  if (::fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) != 0) return std::nullopt;
  FileAttributes attributes = attributesFrom(status);
  attributes.modified = momentFrom(status.st_mtimespec);
  setAllocatedSizes(folder, name, attributes);
  return attributes;
}

bool hasHiddenFlag(int folder, const char* name) {
  struct stat status;
  return ::fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) == 0 && (status.st_flags & UF_HIDDEN) != 0;
}

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

bool isMountedOver(dev_t device, int folder) {
  struct stat status;
  // The two volumes of the startup disk may share one device number. They meet only in folders that no tree
  // of ours contains.
  return ::fstat(folder, &status) != 0 || status.st_dev != device;
}

int exclusiveRenameCall(int sourceFolder, const char* source, int destinationFolder,
                        const char* destination) {
  const int result = ::renameatx_np(sourceFolder, source, destinationFolder, destination, RENAME_EXCL);
  return result == 0 ? 0 : errno;
}

int syncFile(int file) {
  // fsync(2) hands the data to the drive, which may keep it in its own memory and write out the later rename
  // first. F_BARRIERFSYNC keeps the order, but only some volumes support it (fcntl(2)).
  if (::fcntl(file, F_BARRIERFSYNC) == 0) return 0;
  return ::fsync(file) == 0 ? 0 : errno;
}

int syncVolume(int item) {
  // Without SYNC_VOLUME_FULLSYNC the data may stay in the drive's memory, and without SYNC_VOLUME_WAIT the
  // medium isn't flushed at all. The result is the error number itself; `errno` doesn't change
  // (sync_volume_np(3)).
  return ::fsync_volume_np(item, SYNC_VOLUME_FULLSYNC | SYNC_VOLUME_WAIT);
}

int parentOf(int process) {
  // Unlike proc_pidinfo this works for the processes of every user. Those that started us may be root's.
  int question[] = {CTL_KERN, KERN_PROC, KERN_PROC_PID, process};
  kinfo_proc answer{};
  std::size_t size = sizeof answer;
  if (::sysctl(question, 4, &answer, &size, nullptr, 0) != 0 || size == 0) return 0;
  return answer.kp_eproc.e_ppid;
}

}  // namespace quarn
