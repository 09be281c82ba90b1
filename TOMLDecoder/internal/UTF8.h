#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace toml {

namespace UTF8 {

/// The offset of the first byte that doesn't begin a character; the length of the text if all is well.
/// Overlong forms, surrogates and numbers beyond U+10FFFF are not characters (RFC 3629).
std::size_t validPrefix(std::string_view text);

/// How many bytes the character at the start of a valid text takes; 0 for an empty text.
std::size_t firstCharacter(std::string_view text);

/// Appends a character. `code` is at most 0x10FFFF and not a surrogate.
void append(std::string& text, std::uint32_t code);

}  // namespace UTF8

}  // namespace toml
