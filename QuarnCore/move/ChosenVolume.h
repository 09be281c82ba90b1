#pragma once

#include <cstdint>
#include <optional>

#include "Platform/Platform.h"

namespace quarn {

/// The volume on which a destination was chosen. A drive that is pulled out can leave a folder of its name on
/// the startup disk, which must not be taken for the drive. The two differ in the mount point and the device
/// number. If another drive takes over both, the comparison that follows fails, because the copy isn't there.
class ChosenVolume {
 public:
  /// Returns the volume that holds a folder, or will hold it once it exists. Returns nothing if the folder
  /// lies below "/Volumes/<name>" and nothing is mounted there, or if that can't be looked at.
  static std::optional<ChosenVolume> holding(const ReadOnlyPlatform& platform, const Path& folder);
  /// Returns the volume of a drive that was named, which may be any folder. Throws `MoveRefused` if there is
  /// no folder, or nothing is mounted there, or it is "/Volumes" itself, which only holds mount points: the
  /// folders made there would be on the startup disk. So it does if that can't be looked at.
  static ChosenVolume ofDrive(const ReadOnlyPlatform& platform, const Path& drive);
  /// Does the same as `holding`, but throws `MoveRefused` instead, and tells which of the two it is.
  static ChosenVolume requiredFor(const ReadOnlyPlatform& platform, const Path& folder);

  /// Returns whether the volume is still mounted and the item, or what a link leads to, lies on it. The item
  /// must exist.
  bool holds(const ReadOnlyPlatform& platform, const Path& item) const;
  /// Throws `MoveRefused` unless `holds` returns true.
  void requireHolds(const ReadOnlyPlatform& platform, const Path& item) const;

 private:
  ChosenVolume(std::optional<Path> drive, std::int32_t device) : drive_(std::move(drive)), device_(device) {}

  std::optional<Path> drive_;  ///< "/Volumes/<name>"; absent for the startup volume
  std::int32_t device_;
};

}  // namespace quarn
