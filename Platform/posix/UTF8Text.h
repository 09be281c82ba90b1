#pragma once

#include <cstdint>
#include <string>

namespace quarn::UTF8Text {

/// Whether a text may hold the character of this number: not NUL, and no half of a surrogate pair.
bool isScalar(std::uint32_t number);
/// A number up to 0x10FFFF.
void append(std::string& text, std::uint32_t scalar);

}  // namespace quarn::UTF8Text
