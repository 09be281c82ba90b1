#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace toml {

namespace UTF8 {

/// Where the first byte stands that begins no character; the length of the text if there is none.
/// Overlong forms, surrogates and numbers beyond U+10FFFF are no characters.
std::size_t validPrefix(std::string_view text);

/// How many bytes the character at the start of a valid text takes; 0 for an empty text.
std::size_t firstCharacter(std::string_view text);

/// Appends a character. `code` is no surrogate, and at most 0x10FFFF.
void append(std::string& text, std::uint32_t code);

}  // namespace UTF8

}  // namespace toml
