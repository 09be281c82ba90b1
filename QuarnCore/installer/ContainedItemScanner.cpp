#include "QuarnCore/installer/ContainedItemScanner.h"

#include <algorithm>
#include <optional>

#include "Platform/Text.h"
#include "QuarnCore/foundation/SizingService.h"

namespace quarn::ContainedItemScanner {
namespace {

/// Judges by the extension alone. What a file without one holds could at most make it a script, and a script
/// in a folder is no item.
class ItemVisitor : public WalkVisitor {
 public:
  explicit ItemVisitor(const Path& root) : root_(root) {}

  WalkStep visit(const WalkItem& item) override {
    // A link can lead anywhere, also out of the image or the archive.
    if (item.kind() == FileKind::symbolicLink) return WalkStep::proceed;
    const Path path = root_.appending(item.relativePath());
    const auto kind = InstallerKinds::ofExtension(path);
    if (kind != InstallerKind::app && kind != InstallerKind::pkg && kind != InstallerKind::mpkg)
      return WalkStep::proceed;
    found.emplace_back(path, *kind);
    return WalkStep::skipDescendants;
  }
  WalkStep failed(const Path& folder, const PlatformError& error) override {
    if (folder == root_) ofTheRoot = error;
    return WalkStep::proceed;
  }

  std::vector<std::pair<Path, InstallerKind>> found;
  std::optional<PlatformError> ofTheRoot;

 private:
  const Path root_;
};

}  // namespace

InstallableItem itemAt(const ReadOnlyPlatform& platform, const Path& path, InstallerKind kind) {
  return {.id = path.text(),
          .kind = kind,
          .path = path.text(),
          .label = path.lastComponent(),
          .sizeBytes = SizingService::measure(platform, path)};
}

std::vector<InstallableItem> scan(const ReadOnlyPlatform& platform, const Path& root) {
  ItemVisitor visitor(root);
  platform.files.walk(root, Hidden::skipped, visitor);
  if (visitor.ofTheRoot) throw *visitor.ofTheRoot;
  std::vector<InstallableItem> items;
  for (const auto& [path, kind] : visitor.found) items.push_back(itemAt(platform, path, kind));
  std::stable_sort(items.begin(), items.end(), [](const InstallableItem& a, const InstallableItem& b) {
    return Text::precedes(a.path, b.path);
  });
  return items;
}

}  // namespace quarn::ContainedItemScanner
