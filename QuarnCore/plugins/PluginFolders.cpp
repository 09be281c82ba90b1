#include "QuarnCore/plugins/PluginFolders.h"

#include <algorithm>

#include "Platform/CocoaError.h"
#include "QuarnCore/foundation/Sighting.h"

namespace quarn::PluginFolders {
namespace {

bool mayLead(const ReadOnlyPlatform& platform, const Path& place, const Sighting& folder) {
  const auto attributes = platform.files.attributes(place);
  if (!attributes) return !CocoaError::saysMissing(attributes.error());
  return attributes->kind == FileKind::symbolicLink && sight(platform.files, place).isAtOrIn(folder);
}

bool mayLeadFrom(const ReadOnlyPlatform& platform, PluginFormat format, const Sighting& folder,
                 const Path& but) {
  const auto found = names(platform, format);
  if (!found) return !CocoaError::saysMissing(found.error());
  return std::any_of(found->begin(), found->end(), [&](const std::string& name) {
    const Path place = PluginFormats::systemPath(format, name);
    return place != but && mayLead(platform, place, folder);
  });
}

}  // namespace

Result<std::vector<std::string>> names(const ReadOnlyPlatform& platform, PluginFormat format) {
  const Path folder(rowOf(format).systemDirectory);
  return platform.files.list(platform.files.resolvingLinks(folder), Hidden::included);
}

bool hold(const Path& systemPath) {
  const std::string name = systemPath.lastComponent();
  if (name.empty() || name == "." || name == ".." || systemPath.holdsNul()) return false;
  const auto& rows = checkedRows<PluginFormat>();
  return std::any_of(rows.begin(), rows.end(), [&](const PluginFormatRow& row) {
    return systemPath == PluginFormats::systemPath(row.value, name);
  });
}

bool mayLeadTo(const ReadOnlyPlatform& platform, const Path& folder, const Path& but) {
  const Sighting place = sight(platform.files, folder);
  const auto& rows = checkedRows<PluginFormat>();
  return std::any_of(rows.begin(), rows.end(), [&](const PluginFormatRow& row) {
    return mayLeadFrom(platform, row.value, place, but);
  });
}

}  // namespace quarn::PluginFolders
