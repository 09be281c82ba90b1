#include "QuarnCore/discovery/AppBundleScanRoots.h"

#include "Platform/PathText.h"
#include "QuarnCore/foundation/AppStorageNames.h"

namespace quarn {

namespace AppBundleScanRoots {
namespace {

bool isFolderItself(const ReadOnlyPlatform& platform, const Path& item) {
  const auto attributes = platform.files.attributes(item);
  return attributes && attributes->kind == FileKind::folder;
}

bool holdsBundle(const ReadOnlyPlatform& platform, const Path& folder, int maxDepth) {
  std::vector<Path> bundles;
  AppBundleEnumerator::walk(platform, folder, 0, maxDepth, bundles);
  return !bundles.empty();
}

}  // namespace

std::vector<Path> standardApplicationRoots(const ReadOnlyPlatform& platform, bool includeSystem) {
  std::vector<Path> roots = {Path("/Applications")};
  if (includeSystem) {
    roots.emplace_back("/Applications/Utilities");
    roots.emplace_back("/System/Applications");
  }
  const Path ofUser = platform.places.home().appending("Applications");
  if (platform.files.exists(ofUser)) roots.push_back(ofUser);
  return roots;
}

std::vector<Path> supplementalApplicationSupportRoots(const ReadOnlyPlatform& platform, int maxDepth) {
  const Path support = platform.places.home().appending("Library/Application Support");
  std::vector<Path> roots;
  for (const std::string& name : platform.files.list(support, Hidden::skipped).valueOr({})) {
    const Path child = support.appending(name);
    if (isFolderItself(platform, child) && holdsBundle(platform, child, maxDepth)) roots.push_back(child);
  }
  return roots;
}
}  // namespace AppBundleScanRoots

namespace AppBundleEnumerator {
namespace {

/// Lists a folder. A folder that is itself a link can't be listed under its own path, so its target is
/// listed.
std::vector<std::string> names(const ReadOnlyPlatform& platform, const Path& folder) {
  if (auto listed = platform.files.list(folder, Hidden::skipped)) return *std::move(listed);
  const auto target = platform.files.readSymbolicLink(folder);
  if (!target) return {};
  const Path resolved = platform.files.resolvingLinks(PathText::linkTarget(folder, *target));
  return platform.files.list(resolved, Hidden::skipped).valueOr({});
}

}  // namespace

void walk(const ReadOnlyPlatform& platform, const Path& root, int depth, int maxDepth,
          std::vector<Path>& bundles) {
  if (depth > maxDepth) return;
  for (const std::string& name : names(platform, root)) {
    const Path child = root.appending(name);
    if (child.extension() == "app") {
      bundles.push_back(child);
    } else if (depth < maxDepth && platform.files.isFolder(child)) {
      walk(platform, child, depth + 1, maxDepth, bundles);
    }
  }
}
}  // namespace AppBundleEnumerator

namespace ExternalAppsRootsDiscovery {
std::vector<Path> roots(const ReadOnlyPlatform& platform, const std::vector<Path>& extra) {
  const Path volumes("/Volumes");
  std::vector<Path> found;
  for (const std::string& name : platform.files.list(volumes, Hidden::skipped).valueOr({})) {
    const Path apps = AppStorageNames::appsRoot(volumes.appending(name));
    if (platform.files.exists(apps)) found.push_back(apps);
  }
  for (const Path& folder : extra) {
    if (platform.files.exists(folder)) found.push_back(folder);
  }
  return found;
}
}  // namespace ExternalAppsRootsDiscovery

}  // namespace quarn
