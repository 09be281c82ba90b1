#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Platform/Platform.h"

/// Local snapshots of the boot volume, by way of `tmutil`. A safety net: nothing depends on one.
namespace quarn::APFSSnapshotService {

struct Snapshot {
  std::string name;
  /// Known only for a snapshot just created; `tmutil` lists names from which no date is read.
  std::optional<Moment> createdAt;
  bool operator==(const Snapshot&) const = default;
};

struct CreateResult {
  std::optional<Snapshot> snapshot;  ///< absent when the tool's answer wasn't understood
  std::string standardOutput;
  std::string standardError;
  bool succeeded = false;
};

/// The tool is there.
bool isSupported(const ReadOnlyPlatform& platform);
/// `tmutil` names a snapshot itself, so the label isn't used.
CreateResult create(Platform& platform, const std::optional<std::string>& label);
std::vector<Snapshot> list(const ReadOnlyPlatform& platform);

}  // namespace quarn::APFSSnapshotService
