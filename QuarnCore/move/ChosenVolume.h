#pragma once

#include <cstdint>
#include <optional>

#include "Platform/Platform.h"

namespace quarn {

/// The volume on which a destination was chosen. A drive that is pulled can leave a folder of its name on the
/// startup disk, which is no drive. Told apart by the mount and by the device number; a drive that takes both
/// over is found by the comparison that follows, since the copy isn't there.
class ChosenVolume {
 public:
  /// The volume that holds a folder, or will hold it once it is made. Nothing if the folder lies below
  /// "/Volumes/<name>" and nothing is mounted there.
  static std::optional<ChosenVolume> holding(const ReadOnlyPlatform& platform, const Path& folder);
  /// The same; throws `MoveRefused` where nothing is mounted.
  static ChosenVolume requiredFor(const ReadOnlyPlatform& platform, const Path& folder);

  /// The volume is still there, and an item that exists, or what a link leads to, lies on it.
  bool holds(const ReadOnlyPlatform& platform, const Path& item) const;
  /// Throws `MoveRefused` unless it is so.
  void requireHolds(const ReadOnlyPlatform& platform, const Path& item) const;

 private:
  ChosenVolume(std::optional<Path> drive, std::int32_t device) : drive_(std::move(drive)), device_(device) {}

  std::optional<Path> drive_;  ///< "/Volumes/<name>"; absent for the startup volume
  std::int32_t device_;
};

}  // namespace quarn
