#include "QuarnCore/discovery/InfoPlist.h"

#include "Platform/PropertyList.h"

namespace quarn::InfoPlist {

std::optional<Texts> read(const ReadOnlyPlatform& platform, const Path& bundle) {
  const auto bytes = platform.files.read(bundle.appending("Contents/Info.plist"));
  if (!bytes) return std::nullopt;
  return PropertyList::texts(*bytes);
}

std::optional<std::string> value(const Texts& texts, const std::string& key) {
  const auto found = texts.find(key);
  if (found == texts.end()) return std::nullopt;
  return found->second;
}

}  // namespace quarn::InfoPlist
