#pragma once

#include <string>
#include <string_view>

/// What of `Text` needs the tables of Unicode, which each system has its own of.
namespace quarn::Unicode {

/// NFC of a text that is UTF-8.
std::string canonical(std::string_view text);
/// As `Text::localizedCaseInsensitiveCompare`, for any bytes.
int compare(std::string_view a, std::string_view b);
/// As `Text::localizedCaseInsensitiveContains`, for a `part` that isn't empty and any bytes.
bool contains(std::string_view text, std::string_view part);
/// Of a text that is UTF-8, each character by itself: a capital sigma at the end of a word becomes the same
/// small one as anywhere else.
std::string lowercased(std::string_view text);
/// How many bytes the first `count` grapheme clusters take, for any bytes.
std::size_t prefixLength(std::string_view text, std::size_t count);

}  // namespace quarn::Unicode
