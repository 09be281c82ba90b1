#include "Platform/system/CopyCalls.h"

#include <cerrno>
#include <copyfile.h>
#include <fcntl.h>
#include <memory>
#include <string_view>
#include <sys/acl.h>
#include <sys/attr.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "Platform/posix/Descriptor.h"
#include "Platform/posix/ItemCopier.h"

namespace quarn {
namespace {

// The permission bits and the set-user-ID, set-group-ID and sticky bits (chmod(2)).
constexpr mode_t permissions = 07777;
constexpr mode_t foreignIdentity = S_ISUID | S_ISGID;

/// The flags that a user may set (chflags(2)). The remaining ones describe how the system stores the item and
/// don't belong to the copy.
constexpr std::uint32_t ownersFlags = UF_NODUMP | UF_IMMUTABLE | UF_APPEND | UF_OPAQUE | UF_HIDDEN;
constexpr std::uint32_t rootsFlags = SF_ARCHIVED | SF_IMMUTABLE | SF_APPEND;

struct FreeList {
  void operator()(acl_t list) const { ::acl_free(list); }
};

/// Returns whether a volume can't store something. FAT returns EINVAL for flags.
bool isUnsupported(int errnoValue) {
  return errnoValue == ENOTSUP || errnoValue == EOPNOTSUPP || errnoValue == ENOSYS || errnoValue == EINVAL;
}

/// Returns whether an error may be ignored for something that is kept only if permitted. A network volume may
/// refuse what its server doesn't allow.
bool isRefused(int errnoValue) {
  return errnoValue == EPERM || errnoValue == EACCES || isUnsupported(errnoValue);
}

/// Returns whether the owner was really stored. A volume that ignores ownership accepts any owner and stores
/// none.
bool hasOwnerOf(const struct stat& source, int destination) {
  struct stat status;
  return ::fstat(destination, &status) == 0 && status.st_uid == source.st_uid &&
         status.st_gid == source.st_gid;
}

int copyTimes(const struct stat& status, int destination) {
  const timespec times[]{status.st_atimespec, status.st_mtimespec};
  if (::futimens(destination, times) != 0 && !isUnsupported(errno)) return errno;
  attrlist which{};
  which.bitmapcount = ATTR_BIT_MAP_COUNT;
  which.commonattr = ATTR_CMN_CRTIME;
  timespec creation = status.st_birthtimespec;
  // After the time of modification: setting that to an earlier time than the creation time moves the creation
  // time too. Failure is ignored because many volumes store no creation time.
  static_cast<void>(::fsetattrlist(destination, &which, &creation, sizeof creation, 0));
  return 0;
}

int copyAccessList(int source, int destination) {
  const std::unique_ptr<std::remove_pointer_t<acl_t>, FreeList> list(::acl_get_fd(source));
  // ENOENT: the item has no access control list (acl_get_fd(3)).
  if (!list) return errno == ENOENT || isUnsupported(errno) ? 0 : errno;
  return ::acl_set_fd(destination, list.get()) == 0 || isUnsupported(errno) ? 0 : errno;
}

int copyFlags(const struct stat& source, int destination) {
  struct stat status;
  if (::fstat(destination, &status) != 0) return errno;
  // Only root may change the SF_ flags (chflags(2)).
  const std::uint32_t copied = ownersFlags | (::geteuid() == 0 ? rootsFlags : 0);
  const std::uint32_t flags = (status.st_flags & ~copied) | (source.st_flags & copied);
  if (flags == status.st_flags || ::fchflags(destination, flags) == 0) return 0;
  return isRefused(errno) ? 0 : errno;
}

/// Opens the link itself. Without O_SYMLINK, open(2) would follow it.
Descriptor openLink(const EntryAt& link) {
  return Descriptor(::openat(link.folder, link.name, O_RDONLY | O_SYMLINK | O_NONBLOCK | O_CLOEXEC));
}

/// Returns whether an attribute belongs to the system: any com.apple name except those in which users keep
/// their own data (resource fork, Finder information, and com.apple.metadata, which holds comments and tags).
bool isSystems(std::string_view name) {
  return name.starts_with("com.apple.") && name != XATTR_RESOURCEFORK_NAME && name != XATTR_FINDERINFO_NAME &&
         !name.starts_with("com.apple.metadata:");
}

}  // namespace

int copyContent(int source, const struct stat&, int destination) {
  // COPYFILE_DATA_SPARSE keeps holes if both volumes support them and writes them out otherwise
  // (copyfile(3)).
  constexpr copyfile_flags_t content = COPYFILE_DATA | COPYFILE_DATA_SPARSE;
  return ::fcopyfile(source, destination, nullptr, content) == 0 ? 0 : errno;
}

int copyLinkMetadata(const EntryAt& source, const struct stat& status, const EntryAt& destination) {
  const Descriptor from = openLink(source);
  if (!from.isOpen()) return errno;
  const Descriptor to = openLink(destination);
  return to.isOpen() ? copyMetadata(from.number(), status, to.number()) : errno;
}

int copyFifoMetadata(const struct stat& status, const EntryAt& destination) {
  const auto [folder, name] = destination;
  const timespec times[]{status.st_atimespec, status.st_mtimespec};
  if (::fchownat(folder, name, status.st_uid, status.st_gid, AT_SYMLINK_NOFOLLOW) != 0 && !isRefused(errno))
    return errno;
  if (::fchmodat(folder, name, status.st_mode & permissions, AT_SYMLINK_NOFOLLOW) != 0) return errno;
  return ::utimensat(folder, name, times, AT_SYMLINK_NOFOLLOW) == 0 ? 0 : errno;
}

/// Failures are ignored: the removal that follows reports what is still in the way.
void unlockCopy(int folder, const char* name) {
  struct stat status;
  if (::fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) != 0) return;
  attrlist which{};
  which.bitmapcount = ATTR_BIT_MAP_COUNT;
  which.commonattr = ATTR_CMN_FLAGS;
  std::uint32_t flags = status.st_flags & ~(ownersFlags | rootsFlags);
  if (flags != status.st_flags)
    static_cast<void>(::setattrlistat(folder, name, &which, &flags, sizeof flags, FSOPT_NOFOLLOW));
  if (S_ISDIR(status.st_mode)) static_cast<void>(::fchmodat(folder, name, S_IRWXU, AT_SYMLINK_NOFOLLOW));
}

// The access control list and the flags come last, because they may forbid everything else.
int copyMetadata(int source, const struct stat& status, int destination) {
  if (::fchown(destination, status.st_uid, status.st_gid) != 0 && !isRefused(errno)) return errno;
  if (const int error = copyExtendedAttributes(source, destination)) return error;
  // Under another owner these bits would give away privileges that the source doesn't give.
  const mode_t lent = hasOwnerOf(status, destination) ? 0 : foreignIdentity;
  const mode_t mode = status.st_mode & permissions & ~lent;
  if (::fchmod(destination, mode) != 0 && !isUnsupported(errno)) return errno;
  if (const int error = copyTimes(status, destination)) return error;
  if (const int error = copyAccessList(source, destination)) return error;
  return copyFlags(status, destination);
}

ssize_t listAttributes(int item, char* names, std::size_t size) {
  return ::flistxattr(item, names, size, 0);
}

ssize_t getAttribute(int item, const char* name, char* value, std::size_t size) {
  return ::fgetxattr(item, name, value, size, 0, 0);
}

int setAttribute(int item, const char* name, const char* value, std::size_t size) {
  return ::fsetxattr(item, name, value, size, 0, 0);
}

// Some attributes, such as com.apple.rootless and com.apple.provenance, can be set only by the system, even
// on a file that we have just made. ENOATTR: another program has removed the attribute meanwhile
// (getxattr(2)).
bool mayLeaveBehind(int errnoValue, const char* name) {
  const bool isRefused = errnoValue == EPERM || errnoValue == EACCES;
  return errnoValue == ENOTSUP || errnoValue == EOPNOTSUPP || errnoValue == ENOATTR ||
         (isRefused && isSystems(name));
}

}  // namespace quarn
