#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "QuarnCore/foundation/TemporaryFolders.h"
#include "QuarnCore/installer/InstallerOption.h"
#include "QuarnCore/installer/InstallerSource.h"

namespace quarn {

/// What an installation would do, for people and scripts. Nothing reads it back.
struct InstallerPlan {
  std::string sourcePath;  ///< as it was given
  std::string optionID;
  std::string targetDrivePath;
  std::vector<std::string> actions;
  std::vector<std::string> warnings;
  std::int64_t neededBytes = 0;  ///< the sizes of all items
  bool operator==(const InstallerPlan&) const = default;
};

namespace InstallerPlanner {
/// Never throws, and doesn't look at the drive. An image is attached and detached, and an archive expanded,
/// as `InstallerInspector` does it.
InstallerPlan plan(const ReadOnlyPlatform& platform, TemporaryFolders& temporaryFolders,
                   const InstallerSource& source, const InstallerOption& option, const Path& targetDrive);
}  // namespace InstallerPlanner

}  // namespace quarn
