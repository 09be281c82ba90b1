#include "QuarnCore/launchers/LauncherShimCleaner.h"

#include "Platform/PathText.h"
#include "Platform/Text.h"
#include "QuarnCore/discovery/LauncherShim.h"
#include "QuarnCore/foundation/Turn.h"

namespace quarn::LauncherShimCleaner {
namespace {

bool isBundle(const ReadOnlyPlatform& platform, const Path& item) {
  const auto attributes = platform.files.attributes(item);
  return item.extension() == "app" && attributes && attributes->kind == FileKind::folder;
}

/// `wanted` is standardized.
bool pointsAt(const ReadOnlyPlatform& platform, const Path& bundle, const Path& wanted) {
  const auto recorded = LauncherShim::recordedTarget(platform, bundle);
  if (!recorded || recorded->empty()) return false;
  const Path target = platform.files.standardized(PathText::fileURL(platform.places, *recorded));
  return Text::equal(target.text(), wanted.text());
}

}  // namespace

std::vector<Path> cleanupShims(Platform& platform, const Path& target) {
  const Turn turn(platform);
  const Path wanted = platform.files.standardized(target);
  std::vector<Path> trashed;
  for (const Path& folder : {Path("/Applications"), platform.places.home().appending("Applications")}) {
    for (const std::string& name : platform.files.list(folder, Hidden::included).valueOr({})) {
      const Path child = folder.appending(name);
      if (!isBundle(platform, child) || !pointsAt(platform, child, wanted)) continue;
      if (platform.trash.moveToTrash(child)) trashed.push_back(child);
    }
  }
  return trashed;
}

}  // namespace quarn::LauncherShimCleaner
