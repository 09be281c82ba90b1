#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Platform/Platform.h"

/// Local snapshots of the startup volume, made by `tmutil`. They are only a safety net; nothing depends on
/// them.
namespace quarn::APFSSnapshotService {

struct Snapshot {
  std::string name;
  /// Set only for a snapshot that was just created: no date can be read from the names that `tmutil` lists.
  std::optional<Moment> createdAt;
  bool operator==(const Snapshot&) const = default;
};

struct CreateResult {
  std::optional<Snapshot> snapshot;  ///< absent if the tool's answer wasn't understood
  std::string standardOutput;
  std::string standardError;
  bool succeeded = false;
};

/// Returns whether the tool exists.
bool isSupported(const ReadOnlyPlatform& platform);
/// Creates a snapshot. `tmutil` chooses the name itself, so the label isn't used.
CreateResult create(Platform& platform, const std::optional<std::string>& label);
std::vector<Snapshot> list(const ReadOnlyPlatform& platform);

}  // namespace quarn::APFSSnapshotService
