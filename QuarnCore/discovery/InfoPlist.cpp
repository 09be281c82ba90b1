#include "QuarnCore/discovery/InfoPlist.h"

#include "Platform/PropertyList.h"

namespace quarn {

namespace InfoPlist {
std::optional<Texts> read(const ReadOnlyPlatform& platform, const Path& bundle) {
  const auto bytes = platform.files.read(bundle.appending("Contents/Info.plist"));
  if (!bytes) return std::nullopt;
  return PropertyList::texts(*bytes);
}

std::optional<std::string> name(const Texts& texts) {
  for (const char* key : {"CFBundleDisplayName", "CFBundleName"}) {
    if (auto text = value(texts, key); text && !text->empty()) return text;
  }
  return std::nullopt;
}

std::optional<std::string> value(const Texts& texts, const std::string& key) {
  const auto found = texts.find(key);
  if (found == texts.end()) return std::nullopt;
  return found->second;
}
}  // namespace InfoPlist

namespace BundleIdentifierReader {
std::optional<std::string> read(const ReadOnlyPlatform& platform, const Path& bundle) {
  const auto info = BundleInfoPlistReader::read(platform, bundle);
  return info ? info->bundleIdentifier : std::nullopt;
}
}  // namespace BundleIdentifierReader

namespace BundleInfoPlistReader {
std::optional<Info> read(const ReadOnlyPlatform& platform, const Path& bundle) {
  const auto texts = InfoPlist::read(platform, bundle);
  if (!texts) return std::nullopt;
  const auto shortVersion = InfoPlist::value(*texts, "CFBundleShortVersionString");
  return Info{.bundleIdentifier = InfoPlist::value(*texts, "CFBundleIdentifier"),
              .version = shortVersion ? shortVersion : InfoPlist::value(*texts, "CFBundleVersion")};
}
}  // namespace BundleInfoPlistReader

}  // namespace quarn
