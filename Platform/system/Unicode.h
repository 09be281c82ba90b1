#pragma once

#include <string>
#include <string_view>

/// The parts of `Text` that need Unicode tables. Each system brings its own tables.
namespace quarn::Unicode {

/// Returns the NFC form (Unicode Standard Annex 15) of a valid UTF-8 text.
std::string canonical(std::string_view text);
/// See `Text::localizedCaseInsensitiveCompare`. Takes any bytes.
int compare(std::string_view a, std::string_view b);
/// See `Text::localizedCaseInsensitiveContains`. Takes any bytes, but `part` must not be empty.
bool contains(std::string_view text, std::string_view part);
/// Converts a valid UTF-8 text to lower case, each character by itself: a capital sigma becomes the same
/// small sigma everywhere, also at the end of a word.
std::string lowercased(std::string_view text);
/// Converts a valid UTF-8 text to upper case, by the rules of no language: "i" becomes "I" everywhere.
std::string uppercased(std::string_view text);
/// Returns how many bytes the first `count` grapheme clusters take. Takes any bytes.
std::size_t prefixLength(std::string_view text, std::size_t count);
/// Returns how many grapheme clusters a text has. Takes any bytes.
std::size_t characterCount(std::string_view text);

}  // namespace quarn::Unicode
