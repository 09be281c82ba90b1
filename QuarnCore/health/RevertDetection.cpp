#include "QuarnCore/health/RevertDetection.h"

#include "Platform/DateText.h"
#include "Platform/PathText.h"
#include "QuarnCore/discovery/AppScanner.h"
#include "QuarnCore/foundation/SizeCalculator.h"
#include "QuarnCore/move/HealthManifest.h"

namespace quarn {

namespace SSDRevertDetector {
namespace {

HealthIssue reverted(const ReadOnlyPlatform& platform, const Path& internal, const Path& external) {
  return {.kind = HealthIssue::Kind::reverted,
          .location = internal,
          .target = external,
          .detail =
              "An updater replaced the symlink with a real bundle on internal disk. SSD copy is now "
              "orphaned.",
          .sizeBytes = SizeCalculator::size(platform, external)};
}

}  // namespace

Result detect(const ReadOnlyPlatform& platform, const std::vector<Path>& appsRoots,
              const TextSet& realAppNames) {
  Result result;
  for (const Path& root : appsRoots) {
    for (const Path& external : FolderChildren::bundles(platform, root).valueOr({})) {
      const std::string name = external.lastComponent();
      if (!realAppNames.contains(name)) continue;
      const Path internal = Path("/Applications").appending(name);
      result.handledSources.insert(platform.files.standardized(internal).text());
      if (!AppScanner::launcherShimTarget(platform, internal))
        result.issues.push_back(reverted(platform, internal, external));
    }
  }
  return result;
}

}  // namespace SSDRevertDetector

namespace ManifestRevertDetector {
namespace {

/// No link can hold more (PATH_MAX of Linux, which is four times that of a Mac), so nothing was moved there.
/// A record of anybody may say millions.
constexpr std::size_t longestTarget = 4096;

bool isRealItem(const ReadOnlyPlatform& platform, const Path& source) {
  return platform.files.exists(source) && !platform.files.isSymbolicLink(source);
}

HealthIssue reverted(const ReadOnlyPlatform& platform, const HealthManifestEntry& entry) {
  const Path source = PathText::fileURL(platform.places, entry.sourcePath);
  return {.kind = HealthIssue::Kind::reverted,
          .location = source,
          .target = PathText::fileURL(platform.places, entry.destinationPath),
          .detail = "Manifest says this was symlinked to SSD on " + DateText::plain(entry.movedAt) +
                    ". It's now a real bundle on internal disk and the SSD copy is gone.",
          .sizeBytes = SizeCalculator::size(platform, source)};
}

}  // namespace

std::vector<HealthIssue> detect(const ReadOnlyPlatform& platform, const TextSet& symlinkLocations,
                                const TextSet& alreadyReverted) {
  std::vector<HealthIssue> issues;
  for (const HealthManifestEntry& entry : HealthManifest::load(platform)) {
    if (entry.destinationPath.size() > longestTarget) continue;
    const bool isKnown =
        alreadyReverted.contains(entry.sourcePath) || symlinkLocations.contains(entry.sourcePath);
    if (!isKnown && isRealItem(platform, Path(entry.sourcePath))) issues.push_back(reverted(platform, entry));
  }
  return issues;
}

}  // namespace ManifestRevertDetector

namespace OrphanedBundleDetector {
namespace {

HealthIssue orphan(const ReadOnlyPlatform& platform, const Path& bundle) {
  const std::int64_t size = SizeCalculator::size(platform, bundle);
  return {.kind = HealthIssue::Kind::orphan,
          .location = bundle,
          .target = std::nullopt,
          .detail = "Bundle on SSD with no inbound symlink. Wasting " + SizeCalculator::format(size) + ".",
          .sizeBytes = size};
}

}  // namespace

std::vector<HealthIssue> detect(const ReadOnlyPlatform& platform, const std::vector<Path>& appsRoots,
                                const TextSet& linkedTargets, const TextSet& realAppNames) {
  std::vector<HealthIssue> issues;
  for (const Path& root : appsRoots) {
    for (const Path& bundle : FolderChildren::bundles(platform, root).valueOr({})) {
      const bool isInUse = linkedTargets.contains(platform.files.standardized(bundle).text()) ||
                           realAppNames.contains(bundle.lastComponent());
      if (!isInUse) issues.push_back(orphan(platform, bundle));
    }
  }
  return issues;
}

}  // namespace OrphanedBundleDetector
}  // namespace quarn
