#include "Platform/system/CopyCalls.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <vector>

#include "Platform/posix/ItemCopier.h"

namespace quarn {
namespace {

// The permission bits and the set-user-ID, set-group-ID and sticky bits (chmod(2)).
constexpr mode_t permissions = 07777;
constexpr mode_t foreignIdentity = S_ISUID | S_ISGID;

struct Times {
  explicit Times(const struct stat& status) : values{status.st_atim, status.st_mtim} {}
  timespec values[2];
};

int writeAll(int file, const char* bytes, std::size_t count, off_t offset) {
  while (count > 0) {
    // The position is given with each call, so a copy with holes needs no seeking in the destination.
    const ssize_t written = ::pwrite(file, bytes, count, offset);
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return errno;
    bytes += written;
    offset += written;
    count -= static_cast<std::size_t>(written);
  }
  return 0;
}

/// Copies bytes from `begin` to `end`. A file that has shrunk meanwhile may end earlier.
int copyRange(int source, int destination, off_t begin, off_t end) {
  // Kept per thread, so that a tree of small files doesn't allocate a buffer for each of them.
  thread_local std::vector<char> buffer(256 * 1024);
  while (begin < end) {
    const auto wanted = std::min(static_cast<std::size_t>(end - begin), buffer.size());
    const ssize_t count = ::pread(source, buffer.data(), wanted, begin);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return count < 0 ? errno : 0;
    if (const int error = writeAll(destination, buffer.data(), static_cast<std::size_t>(count), begin))
      return error;
    begin += count;
  }
  return 0;
}

/// Copies only the ranges that hold data (SEEK_DATA and SEEK_HOLE, lseek(2)).
int copySparse(int source, int destination, off_t size) {
  for (off_t end = 0; end < size;) {
    const off_t begin = ::lseek(source, end, SEEK_DATA);
    // ENXIO: there is only a hole up to the end.
    if (begin < 0 && errno == ENXIO) break;
    // The file system can't tell where the holes are; then everything is copied.
    if (begin < 0) return copyRange(source, destination, end, size);
    end = ::lseek(source, begin, SEEK_HOLE);
    if (end < 0) end = size;
    if (const int error = copyRange(source, destination, begin, end)) return error;
  }
  // Makes a hole at the end, which no write would reach.
  return ::ftruncate(destination, size) == 0 ? 0 : errno;
}

/// Sets metadata by name, for items that can't be opened without a side effect: links and FIFOs.
int copyMetadataByName(const struct stat& status, const EntryAt& destination) {
  const bool owned = ::fchownat(destination.folder, destination.name, status.st_uid, status.st_gid,
                                AT_SYMLINK_NOFOLLOW) == 0;
  // EPERM: only root may give a file away (chown(2)). EINVAL: the file system can't store this owner.
  if (!owned && errno != EPERM && errno != EINVAL) return errno;
  // Linux has no mode of its own for a link (symlink(7)).
  if (!S_ISLNK(status.st_mode) &&
      ::fchmodat(destination.folder, destination.name, status.st_mode & permissions, 0) != 0)
    return errno;
  return ::utimensat(destination.folder, destination.name, Times(status).values, AT_SYMLINK_NOFOLLOW) == 0
             ? 0
             : errno;
}

/// Returns whether the attribute belongs to the user. The other name spaces belong to the system (xattr(7)).
bool isPersons(const char* name) {
  return std::strncmp(name, "user.", 5) == 0;
}

}  // namespace

int copyContent(int source, const struct stat& status, int destination) {
  // A file without holes takes the simple path, which saves two seeks per file.
  const bool mayHaveHoles = static_cast<off_t>(status.st_blocks) * 512 < status.st_size;
  return mayHaveHoles ? copySparse(source, destination, status.st_size)
                      : copyRange(source, destination, 0, status.st_size);
}

int copyLinkMetadata(const EntryAt&, const struct stat& status, const EntryAt& destination) {
  return copyMetadataByName(status, destination);
}

int copyFifoMetadata(const struct stat& status, const EntryAt& destination) {
  return copyMetadataByName(status, destination);
}

void unlockCopy(int folder, const char* name) {
  struct stat status;
  if (::fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) == 0 && S_ISDIR(status.st_mode))
    ::fchmodat(folder, name, S_IRWXU, 0);
}

/// The owner comes before the mode, because chown(2) clears the set-user-ID and set-group-ID bits.
int copyMetadata(int source, const struct stat& status, int destination) {
  const bool owned = ::fchown(destination, status.st_uid, status.st_gid) == 0;
  if (!owned && errno != EPERM && errno != EINVAL) return errno;
  if (const int error = copyExtendedAttributes(source, destination)) return error;
  // Under another owner these bits would give away privileges that the source doesn't give.
  const mode_t mode = status.st_mode & permissions & ~(owned ? 0 : foreignIdentity);
  if (::fchmod(destination, mode) != 0) return errno;
  return ::futimens(destination, Times(status).values) == 0 ? 0 : errno;
}

ssize_t listAttributes(int item, char* names, std::size_t size) {
  return ::flistxattr(item, names, size);
}

ssize_t getAttribute(int item, const char* name, char* value, std::size_t size) {
  return ::fgetxattr(item, name, value, size);
}

int setAttribute(int item, const char* name, const char* value, std::size_t size) {
  return ::fsetxattr(item, name, value, size, 0);
}

bool mayLeaveBehind(int errnoValue, const char* name) {
  const bool isRefused = errnoValue == EPERM || errnoValue == EACCES;
  return errnoValue == ENOTSUP || errnoValue == ENODATA || (isRefused && !isPersons(name));
}

}  // namespace quarn
