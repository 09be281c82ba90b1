#include <cerrno>
#include <cstdlib>
#include <sys/mount.h>

#include "Platform/macos/FoundationText.h"
#include "Platform/macos/MacPlatform.h"

namespace quarn {
namespace {

using CocoaError::Operation;

std::optional<std::string> text(NSString* value) {
  if (!value) return std::nullopt;
  return bytesOf(value);
}

std::optional<std::int64_t> number(NSNumber* value) {
  if (!value) return std::nullopt;
  return value.longLongValue;
}

std::optional<bool> flag(NSNumber* value) {
  if (!value) return std::nullopt;
  return value.boolValue;
}

}  // namespace

Result<std::vector<Path>> MacVolumes::mounted() const {
  @autoreleasepool {
    NSArray<NSURL*>* found = [NSFileManager.defaultManager
        mountedVolumeURLsIncludingResourceValuesForKeys:nil
                                                options:NSVolumeEnumerationSkipHiddenVolumes];
    if (!found) return CocoaError::fromErrno(Operation::listFolder, EIO, Path("/Volumes"));
    std::vector<Path> mountPoints;
    for (NSURL* url in found) mountPoints.push_back(pathOf(url));
    return mountPoints;
  }
}

Result<std::vector<Path>> MacVolumes::mountPoints() const {
  // getmntinfo_r_np(3) returns an array that the caller must free. MNT_NOWAIT uses what the kernel knows, so
  // a server that doesn't answer can't block this.
  struct statfs* table = nullptr;
  const int count = ::getmntinfo_r_np(&table, MNT_NOWAIT);
  if (count <= 0) return CocoaError::fromErrno(Operation::listFolder, errno, Path("/Volumes"));
  std::vector<Path> mountPoints;
  for (int i = 0; i < count; ++i) mountPoints.emplace_back(table[i].f_mntonname);
  std::free(table);
  return mountPoints;
}

Result<VolumeProperties> MacVolumes::properties(const Path& item) const {
  @autoreleasepool {
    NSArray<NSURLResourceKey>* keys = @[
      NSURLVolumeNameKey, NSURLVolumeTotalCapacityKey, NSURLVolumeAvailableCapacityKey,
      NSURLVolumeAvailableCapacityForImportantUsageKey, NSURLVolumeIsBrowsableKey, NSURLVolumeIsInternalKey,
      NSURLVolumeIsReadOnlyKey, NSURLVolumeLocalizedFormatDescriptionKey
    ];
    // A new URL for each question, because a URL keeps the values that it has once returned (NSURL.h).
    NSError* error = nil;
    NSDictionary<NSURLResourceKey, id>* values = [foundationURL(item) resourceValuesForKeys:keys
                                                                                      error:&error];
    if (!values) return foundationError(Operation::readFile, error, item);
    VolumeProperties properties;
    properties.name = text(values[NSURLVolumeNameKey]);
    properties.totalCapacity = number(values[NSURLVolumeTotalCapacityKey]);
    properties.availableCapacity = number(values[NSURLVolumeAvailableCapacityKey]);
    properties.availableCapacityForImportantUsage =
        number(values[NSURLVolumeAvailableCapacityForImportantUsageKey]);
    properties.isBrowsable = flag(values[NSURLVolumeIsBrowsableKey]);
    properties.isInternal = flag(values[NSURLVolumeIsInternalKey]);
    properties.isReadOnly = flag(values[NSURLVolumeIsReadOnlyKey]);
    properties.localizedFormatDescription = text(values[NSURLVolumeLocalizedFormatDescriptionKey]);
    return properties;
  }
}

}  // namespace quarn
