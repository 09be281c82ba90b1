#include "QuarnCore/plugins/PluginSourceScanner.h"

#include <algorithm>
#include <optional>

#include "Platform/Text.h"
#include "QuarnCore/foundation/SizeCalculator.h"

namespace quarn::PluginSourceScanner {
namespace {

constexpr const char* errorDomain = "PluginSourceScanner";
constexpr int noMountPoint = 1;

class BundleSearch : public WalkVisitor {
 public:
  BundleSearch(const ReadOnlyPlatform& platform, const Path& root, const std::set<PluginFormat>& formats)
      : platform_(platform), root_(root), formats_(formats) {}

  WalkStep visit(const WalkItem& item) override {
    if (!isFolderOrLink(item.kind())) return WalkStep::proceed;
    const auto format = formatOf(item.relativePath());
    if (!format || !formats_.contains(*format)) return WalkStep::proceed;
    const Path bundle = root_.appending(item.relativePath());
    if (item.kind() == FileKind::symbolicLink && !platform_.files.isFolder(bundle)) return WalkStep::proceed;
    bundles.push_back({.format = *format,
                       .name = bundle.lastComponent(),
                       .sourcePath = bundle.text(),
                       .sizeBytes = SizeCalculator::size(platform_, bundle)});
    return WalkStep::skipDescendants;
  }
  WalkStep failed(const Path&, const PlatformError&) override { return WalkStep::proceed; }

  std::vector<PluginBundle> bundles;

 private:
  static bool isFolderOrLink(FileKind kind) {
    return kind == FileKind::folder || kind == FileKind::symbolicLink;
  }
  /// Most items have no extension at all, and need no path of their own to tell.
  static std::optional<PluginFormat> formatOf(std::string_view relativePath) {
    const std::string_view name = relativePath.substr(relativePath.rfind('/') + 1);
    return name.find('.') == std::string_view::npos ? std::nullopt : PluginFormats::of(Path(name));
  }

  const ReadOnlyPlatform& platform_;
  const Path& root_;
  const std::set<PluginFormat>& formats_;
};

bool precedes(const PluginBundle& a, const PluginBundle& b) {
  if (a.format == b.format && Text::equal(a.name, b.name)) return Text::precedes(a.sourcePath, b.sourcePath);
  return PluginFormats::precedes(a.format, a.name, b.format, b.name);
}

std::vector<PluginBundle> bundlesBelow(const ReadOnlyPlatform& platform, const Path& root,
                                       const std::set<PluginFormat>& formats) {
  // FileManager.enumerator(at:) delivers nothing below a link.
  if (platform.files.isSymbolicLink(root)) return {};
  BundleSearch search(platform, root, formats);
  platform.files.walk(root, Hidden::skipped, search);
  std::sort(search.bundles.begin(), search.bundles.end(), precedes);
  return std::move(search.bundles);
}

ScanResult scanImage(const ReadOnlyPlatform& platform, const Path& image,
                     const std::set<PluginFormat>& formats) {
  auto mount = std::make_unique<const DiskImageMounter::Attached>(platform, image);
  if (mount->mountPoints().empty())
    throw PlatformError(errorDomain, noMountPoint, "DMG produced no mount points");
  const Path root = mount->mountPoints().front();
  auto bundles = bundlesBelow(platform, root, formats);
  mount->requireAttached();
  return {.bundles = std::move(bundles), .mount = std::move(mount), .rootPath = root.text()};
}

}  // namespace

ScanResult scan(const ReadOnlyPlatform& platform, const Path& source, const std::set<PluginFormat>& formats) {
  if (Text::lowercased(source.extension()) == "dmg") return scanImage(platform, source, formats);
  return {.bundles = bundlesBelow(platform, source, formats), .mount = nullptr, .rootPath = source.text()};
}

}  // namespace quarn::PluginSourceScanner
