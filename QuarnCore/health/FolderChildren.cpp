#include "QuarnCore/health/FolderChildren.h"

namespace quarn::FolderChildren {
namespace {

template <class IsWanted>
std::vector<Path> children(const ReadOnlyPlatform& platform, const Path& folder, Hidden hidden,
                           IsWanted isWanted) {
  std::vector<Path> found;
  for (const std::string& name : platform.files.list(folder, hidden).valueOr({})) {
    Path child = folder.appending(name);
    if (isWanted(child)) found.push_back(std::move(child));
  }
  return found;
}

}  // namespace

std::vector<Path> bundles(const ReadOnlyPlatform& platform, const Path& folder) {
  return children(platform, folder, Hidden::skipped,
                  [](const Path& child) { return child.extension() == "app"; });
}

std::vector<Path> links(const ReadOnlyPlatform& platform, const Path& folder, Hidden hidden) {
  return children(platform, folder, hidden,
                  [&platform](const Path& child) { return platform.files.isSymbolicLink(child); });
}

}  // namespace quarn::FolderChildren
