#pragma once

#include <optional>
#include <string>

#include "Platform/Platform.h"

namespace quarn::BundleIdentifierReader {

/// `CFBundleIdentifier` of a bundle, if it has one.
std::optional<std::string> read(const ReadOnlyPlatform& platform, const Path& bundle);

}  // namespace quarn::BundleIdentifierReader
