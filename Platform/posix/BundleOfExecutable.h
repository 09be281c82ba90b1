#pragma once

#include <optional>
#include <string_view>

#include "Platform/Path.h"

namespace quarn {

/// Returns the innermost bundle whose Contents/MacOS holds the executable, or nothing if there is none.
std::optional<Path> bundleOfExecutable(std::string_view executablePath);

}  // namespace quarn
