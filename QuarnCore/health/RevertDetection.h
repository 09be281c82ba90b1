#pragma once

#include <vector>

#include "QuarnCore/health/FolderChildren.h"
#include "QuarnCore/health/HealthIssue.h"

/// Finds applications whose link an updater has replaced by a real bundle, and copies on a drive that nothing
/// leads to. Two sources are asked that don't know of each other: the disks, and the record of what was
/// moved. Nothing here throws or reports what it can't read.
namespace quarn {

/// Finds names that are a real bundle in the application folders and also one on a drive. Only the name
/// decides, not the version.
namespace SSDRevertDetector {

struct Result {
  std::vector<HealthIssue> issues;  ///< one for each copy on a drive, which is the target and gives the size
  TextSet handledSources;           ///< standardized paths in /Applications that were looked at
};

/// `realAppNames` may come from any application folder; the bundle is always looked for in /Applications. A
/// launcher whose application is there is no real bundle.
Result detect(const ReadOnlyPlatform& platform, const std::vector<Path>& appsRoots,
              const TextSet& realAppNames);

}  // namespace SSDRevertDetector

/// Finds records in the health manifest whose source is a real item again. One whose destination is longer
/// than a link can be isn't of a move.
namespace ManifestRevertDetector {

/// Both sets hold standardized paths; sources that are in one of them are skipped. The size is that of the
/// item at the source.
std::vector<HealthIssue> detect(const ReadOnlyPlatform& platform, const TextSet& symlinkLocations,
                                const TextSet& alreadyReverted);

}  // namespace ManifestRevertDetector

/// Finds bundles on drives that no link leads to and that share their name with no real bundle.
namespace OrphanedBundleDetector {

/// `linkedTargets` holds standardized paths.
std::vector<HealthIssue> detect(const ReadOnlyPlatform& platform, const std::vector<Path>& appsRoots,
                                const TextSet& linkedTargets, const TextSet& realAppNames);

}  // namespace OrphanedBundleDetector
}  // namespace quarn
