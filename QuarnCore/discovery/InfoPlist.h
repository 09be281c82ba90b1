#pragma once

#include <map>
#include <optional>
#include <string>

#include "Platform/Platform.h"

namespace quarn {

namespace InfoPlist {
using Texts = std::map<std::string, std::string>;

/// The text values of a bundle's `Contents/Info.plist` by key; nothing if it can't be read or is no
/// dictionary.
std::optional<Texts> read(const ReadOnlyPlatform& platform, const Path& bundle);

/// The value of a key, if there is one.
std::optional<std::string> value(const Texts& texts, const std::string& key);
}  // namespace InfoPlist

namespace BundleIdentifierReader {
/// `CFBundleIdentifier` of a bundle, if it has one.
std::optional<std::string> read(const ReadOnlyPlatform& platform, const Path& bundle);
}  // namespace BundleIdentifierReader

namespace BundleInfoPlistReader {
struct Info {
  std::optional<std::string> bundleIdentifier;
  std::optional<std::string> version;  ///< the short version, or else the build's
  bool operator==(const Info&) const = default;
};

/// Nothing if the bundle has no readable `Contents/Info.plist`.
std::optional<Info> read(const ReadOnlyPlatform& platform, const Path& bundle);
}  // namespace BundleInfoPlistReader

}  // namespace quarn
