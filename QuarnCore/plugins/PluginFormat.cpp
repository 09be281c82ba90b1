#include "QuarnCore/plugins/PluginFormat.h"

#include "Platform/Text.h"
#include "QuarnCore/foundation/AppStorageNames.h"

namespace quarn::PluginFormats {

std::optional<PluginFormat> fromExtension(std::string_view extension) {
  const std::string lowercased = Text::lowercased(extension);
  for (const PluginFormatRow& row : checkedRows<PluginFormat>()) {
    if (row.pathExtension == lowercased) return row.value;
  }
  return std::nullopt;
}

std::optional<PluginFormat> of(const Path& bundle) {
  return fromExtension(bundle.extension());
}

Path systemPath(PluginFormat format, std::string_view name) {
  return Path(rowOf(format).systemDirectory).appending(name);
}

Path externalizedPath(PluginFormat format, std::string_view name, const Path& drive) {
  return AppStorageNames::pluginsRoot(drive).appending(rowOf(format).label).appending(name);
}

bool precedes(PluginFormat aFormat, std::string_view aName, PluginFormat bFormat, std::string_view bName) {
  if (aFormat != bFormat) return rawValue(aFormat) < rawValue(bFormat);
  return Text::precedes(aName, bName);
}

}  // namespace quarn::PluginFormats
