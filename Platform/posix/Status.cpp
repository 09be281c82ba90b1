#include "Platform/posix/Status.h"

#include <algorithm>
#include <dirent.h>

namespace quarn {

FileKind kindFrom(mode_t mode) {
  switch (mode & S_IFMT) {
    case S_IFREG:
      return FileKind::regular;
    case S_IFDIR:
      return FileKind::folder;
    case S_IFLNK:
      return FileKind::symbolicLink;
    case S_IFSOCK:
      return FileKind::socket;
    case S_IFBLK:
      return FileKind::blockDevice;
    case S_IFCHR:
      return FileKind::characterDevice;
    default:
      return FileKind::unknown;
  }
}

FileAttributes attributesFrom(const struct stat& status) {
  FileAttributes attributes;
  attributes.kind = kindFrom(status.st_mode);
  // The size of a folder has no meaning that is the same on every volume.
  if (attributes.kind != FileKind::folder) attributes.size = status.st_size;
  // `st_blocks` counts units of 512 bytes, whatever the block size of the volume is (stat(2)).
  attributes.blockBytes = static_cast<std::int64_t>(status.st_blocks) * 512;
  attributes.totalAllocatedSize = attributes.blockBytes;
  attributes.allocatedSize = attributes.blockBytes;
  attributes.identity = {static_cast<std::int32_t>(status.st_dev), static_cast<std::uint64_t>(status.st_ino)};
  // Without the bits for the kind (inode(7)).
  attributes.permissions = static_cast<std::uint32_t>(status.st_mode & 07777);
  return attributes;
}

Moment momentFrom(const struct timespec& time) {
  using std::chrono::seconds;
  using Steps = Moment::duration;
  // A volume can store times that a moment can't.
  const auto farthest = std::chrono::duration_cast<seconds>(Moment::duration::max()) - seconds(1);
  const auto whole = std::clamp(seconds(time.tv_sec), -farthest, farthest);
  return Moment(Steps(whole) + std::chrono::duration_cast<Steps>(std::chrono::nanoseconds(time.tv_nsec)));
}

std::optional<FileKind> entryKind(unsigned char type) {
  switch (type) {
    case DT_REG:
      return FileKind::regular;
    case DT_DIR:
      return FileKind::folder;
    case DT_LNK:
      return FileKind::symbolicLink;
    case DT_SOCK:
      return FileKind::socket;
    case DT_BLK:
      return FileKind::blockDevice;
    case DT_CHR:
      return FileKind::characterDevice;
    case DT_UNKNOWN:
      return std::nullopt;
    default:
      return FileKind::unknown;
  }
}

}  // namespace quarn
