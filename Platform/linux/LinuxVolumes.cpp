#include <cerrno>
#include <fcntl.h>
#include <sys/statvfs.h>

#include "Platform/CocoaError.h"
#include "Platform/linux/LinuxPlatform.h"
#include "Platform/linux/MountTable.h"
#include "Platform/posix/PathAt.h"
#include "Platform/posix/ResolvedPath.h"

namespace quarn {
namespace {

PlatformError readError(int errnoValue, const Path& item) {
  return CocoaError::fromErrno(CocoaError::Operation::readFile, errnoValue, item);
}

/// Asks for the volume of the item itself: for a link, the volume on which the link lies.
int volumeStatus(const Path& item, struct statvfs& status) {
  const PathAt at(item);
  if (at.error()) return at.error();
  const Descriptor opened(::openat(at.folder(), at.name(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
  if (!opened.isOpen() || ::fstatvfs(opened.number(), &status) != 0) return errno;
  return 0;
}

std::int64_t bytes(fsblkcnt_t blocks, const struct statvfs& status) {
  return static_cast<std::int64_t>(blocks) * static_cast<std::int64_t>(status.f_frsize);
}

VolumeProperties describe(const MountedVolume& volume, const struct statvfs& status) {
  VolumeProperties properties;
  properties.name = volume.name();
  properties.totalCapacity = bytes(status.f_blocks, status);
  properties.availableCapacity = bytes(status.f_bavail, status);
  properties.availableCapacityForImportantUsage = properties.availableCapacity;
  properties.isBrowsable = !volume.isHidden();
  properties.isInternal = volume.mountPoint == Path("/");
  properties.isReadOnly = volume.isReadOnly;
  if (!volume.fileSystemType.empty()) properties.localizedFormatDescription = volume.fileSystemType;
  return properties;
}

}  // namespace

Result<std::vector<Path>> LinuxVolumes::mounted() const {
  const auto volumes = MountTable::volumes();
  if (!volumes) return readError(errno, Path("/etc/mtab"));
  std::vector<Path> mountPoints;
  for (const MountedVolume& volume : *volumes) {
    if (!volume.isHidden()) mountPoints.push_back(volume.mountPoint);
  }
  return mountPoints;
}

Result<std::vector<Path>> LinuxVolumes::mountPoints() const {
  if (auto found = MountTable::mountPoints()) return *std::move(found);
  return readError(errno, Path("/etc/mtab"));
}

Result<VolumeProperties> LinuxVolumes::properties(const Path& item) const {
  struct statvfs status;
  if (const int error = volumeStatus(item, status)) return readError(error, item);
  const auto volumes = MountTable::volumes();
  if (!volumes) return readError(errno, Path("/etc/mtab"));
  return describe(MountTable::holding(*volumes, withParentResolved(item)), status);
}

}  // namespace quarn
