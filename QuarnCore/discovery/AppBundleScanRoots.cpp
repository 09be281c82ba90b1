#include "QuarnCore/discovery/AppBundleScanRoots.h"

#include "QuarnCore/discovery/AppBundleEnumerator.h"

namespace quarn::AppBundleScanRoots {
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

}  // namespace quarn::AppBundleScanRoots
