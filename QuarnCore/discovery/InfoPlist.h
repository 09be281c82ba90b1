#pragma once

#include <map>
#include <optional>
#include <string>

#include "Platform/Platform.h"

namespace quarn {

namespace InfoPlist {
using Texts = std::map<std::string, std::string>;

/// Returns the text values of a bundle's `Contents/Info.plist` by key, or nothing if it can't be read or
/// isn't a dictionary.
std::optional<Texts> read(const ReadOnlyPlatform& platform, const Path& bundle);

/// Returns the name for people, `CFBundleDisplayName` or else `CFBundleName`; nothing if both are absent or
/// empty.
std::optional<std::string> name(const Texts& texts);

/// Returns the value of a key, if it is there.
std::optional<std::string> value(const Texts& texts, const std::string& key);
}  // namespace InfoPlist

namespace BundleIdentifierReader {
/// Returns the `CFBundleIdentifier` of a bundle, if it has one.
std::optional<std::string> read(const ReadOnlyPlatform& platform, const Path& bundle);
}  // namespace BundleIdentifierReader

namespace BundleInfoPlistReader {
struct Info {
  std::optional<std::string> bundleIdentifier;
  std::optional<std::string> version;  ///< the short version, or the build version if there is none
  bool operator==(const Info&) const = default;
};

/// Returns nothing if the bundle has no readable `Contents/Info.plist`.
std::optional<Info> read(const ReadOnlyPlatform& platform, const Path& bundle);
}  // namespace BundleInfoPlistReader

}  // namespace quarn
