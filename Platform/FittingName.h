#pragma once

#include <string>
#include <string_view>

namespace quarn::FittingName {

/// The most bytes that the name of an item may have, on a Mac's own volumes as on Linux.
inline constexpr std::size_t longest = 255;

/// Returns a name with something at its end. If both together are too long, the name is shortened, but never
/// in the middle of a UTF-8 character, and the end stays whole.
std::string of(std::string name, std::string_view end);

}  // namespace quarn::FittingName
