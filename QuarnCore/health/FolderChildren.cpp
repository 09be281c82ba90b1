#include "QuarnCore/health/FolderChildren.h"

namespace quarn::FolderChildren {
namespace {

template <class IsWanted>
Result<std::vector<Path>> children(const ReadOnlyPlatform& platform, const Path& folder, Hidden hidden,
                                   IsWanted isWanted) {
  const auto names = platform.files.list(folder, hidden);
  if (!names) return names.error();
  std::vector<Path> found;
  for (const std::string& name : *names) {
    Path child = folder.appending(name);
    if (isWanted(child)) found.push_back(std::move(child));
  }
  return found;
}

}  // namespace

Result<std::vector<Path>> bundles(const ReadOnlyPlatform& platform, const Path& folder) {
  return children(platform, folder, Hidden::skipped,
                  [](const Path& child) { return child.extension() == "app"; });
}

std::vector<Path> links(const ReadOnlyPlatform& platform, const Path& folder, Hidden hidden) {
  return children(platform, folder, hidden,
                  [&platform](const Path& child) { return platform.files.isSymbolicLink(child); })
      .valueOr({});
}

}  // namespace quarn::FolderChildren
