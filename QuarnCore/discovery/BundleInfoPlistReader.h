#pragma once

#include <optional>
#include <string>

#include "Platform/Platform.h"

namespace quarn::BundleInfoPlistReader {

struct Info {
  std::optional<std::string> bundleIdentifier;
  std::optional<std::string> version;  ///< the short version, or else the build's
  bool operator==(const Info&) const = default;
};

/// Nothing if the bundle has no readable `Contents/Info.plist`.
std::optional<Info> read(const ReadOnlyPlatform& platform, const Path& bundle);

}  // namespace quarn::BundleInfoPlistReader
