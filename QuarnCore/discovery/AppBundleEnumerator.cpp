#include "QuarnCore/discovery/AppBundleEnumerator.h"

namespace quarn::AppBundleEnumerator {
namespace {

/// Where a link leads; a relative target begins at the folder that holds the link.
Path targetOf(const Path& link, const std::string& target) {
  return target.starts_with('/') ? Path(target) : link.parent().appending(target);
}

/// A folder that is itself a link can't be listed by its own name, so its target is.
std::vector<std::string> names(const ReadOnlyPlatform& platform, const Path& folder) {
  if (auto listed = platform.files.list(folder, Hidden::skipped)) return *std::move(listed);
  const auto target = platform.files.readSymbolicLink(folder);
  if (!target) return {};
  const Path resolved = platform.files.resolvingLinks(targetOf(folder, *target));
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

}  // namespace quarn::AppBundleEnumerator
