#pragma once

#include <map>
#include <optional>
#include <string>

#include "Platform/Platform.h"

namespace quarn::InfoPlist {

using Texts = std::map<std::string, std::string>;

/// The text values of a bundle's `Contents/Info.plist` by key; nothing if it can't be read or is no
/// dictionary.
std::optional<Texts> read(const ReadOnlyPlatform& platform, const Path& bundle);

/// The value of a key, if there is one.
std::optional<std::string> value(const Texts& texts, const std::string& key);

}  // namespace quarn::InfoPlist
