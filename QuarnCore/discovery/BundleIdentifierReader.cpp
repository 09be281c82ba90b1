#include "QuarnCore/discovery/BundleIdentifierReader.h"

#include "QuarnCore/discovery/BundleInfoPlistReader.h"

namespace quarn::BundleIdentifierReader {

std::optional<std::string> read(const ReadOnlyPlatform& platform, const Path& bundle) {
  const auto info = BundleInfoPlistReader::read(platform, bundle);
  return info ? info->bundleIdentifier : std::nullopt;
}

}  // namespace quarn::BundleIdentifierReader
