#pragma once

#include <optional>
#include <string_view>

#include "Platform/Path.h"

namespace quarn {

/// The innermost bundle in which an executable lies as a bundle's executables do; nothing for any other.
std::optional<Path> bundleOfExecutable(std::string_view executablePath);

}  // namespace quarn
