#pragma once

#include <optional>
#include <string>

namespace quarn {

/// The stored text of a link, of any length. Nothing, with `errno` set, if it can't be read.
std::optional<std::string> linkText(int folder, const char* name);

}  // namespace quarn
