#include "QuarnCore/discovery/BundleInfoPlistReader.h"

#include "QuarnCore/discovery/InfoPlist.h"

namespace quarn::BundleInfoPlistReader {

std::optional<Info> read(const ReadOnlyPlatform& platform, const Path& bundle) {
  const auto texts = InfoPlist::read(platform, bundle);
  if (!texts) return std::nullopt;
  const auto shortVersion = InfoPlist::value(*texts, "CFBundleShortVersionString");
  return Info{.bundleIdentifier = InfoPlist::value(*texts, "CFBundleIdentifier"),
              .version = shortVersion ? shortVersion : InfoPlist::value(*texts, "CFBundleVersion")};
}

}  // namespace quarn::BundleInfoPlistReader
