#include "QuarnCore/plugins/PluginCatalogScanner.h"

#include <algorithm>

#include "Platform/Text.h"
#include "QuarnCore/foundation/SizeCalculator.h"
#include "QuarnCore/plugins/PluginFolders.h"

namespace quarn::PluginCatalogScanner {
namespace {

using Kind = PluginInstallStatus::Kind;

PluginInstallStatus statusOf(const ReadOnlyPlatform& platform, const Path& place) {
  if (!platform.files.isSymbolicLink(place)) return {.kind = Kind::native, .target = {}};
  std::string target = platform.files.readSymbolicLink(place).valueOr("");
  const bool leadsSomewhere = platform.files.exists(Path(target));
  return {.kind = leadsSomewhere ? Kind::externalised : Kind::brokenSymlink, .target = std::move(target)};
}

std::int64_t sizeOf(const ReadOnlyPlatform& platform, const Path& place, const PluginInstallStatus& status) {
  if (status.kind == Kind::brokenSymlink) return 0;
  return SizeCalculator::size(platform, status.kind == Kind::native ? place : Path(status.target));
}

/// Two names that differ in their Unicode form alone, and one name in two folders, need an order, too.
bool precedes(const InstalledPlugin& a, const InstalledPlugin& b) {
  if (a.format == b.format && Text::equal(a.name, b.name)) return a.systemPath < b.systemPath;
  return PluginFormats::precedes(a.format, a.name, b.format, b.name);
}

}  // namespace

std::vector<InstalledPlugin> scan(const ReadOnlyPlatform& platform, const std::set<PluginFormat>& formats) {
  std::vector<InstalledPlugin> found;
  for (const PluginFormat folder : formats) {
    for (const std::string& name : PluginFolders::names(platform, folder).valueOr({})) {
      const Path place = PluginFormats::systemPath(folder, name);
      const auto format = PluginFormats::of(place);
      if (!format) continue;
      PluginInstallStatus status = statusOf(platform, place);
      const std::int64_t size = sizeOf(platform, place, status);
      found.push_back({.format = *format,
                       .name = name,
                       .systemPath = place.text(),
                       .sizeBytes = size,
                       .status = std::move(status)});
    }
  }
  std::sort(found.begin(), found.end(), precedes);
  return found;
}

}  // namespace quarn::PluginCatalogScanner
