#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Text as people read it. Texts are UTF-8; bytes that aren't valid UTF-8 are kept and compared as bytes. All
/// functions are pure.
namespace quarn::Text {

bool isUTF8(std::string_view bytes);
/// Returns the text of a file or of a tool's output, or nothing if it isn't valid UTF-8. Drops one leading
/// byte-order mark.
std::optional<std::string> decodingFile(std::string_view bytes);

/// Returns the same spelling (NFC) for all canonically equivalent texts. Use it as the key in sets and maps
/// of names.
std::string canonical(std::string_view text);
/// Returns whether two texts are canonically equivalent. Letter case matters.
bool equal(std::string_view a, std::string_view b);
bool hasPrefix(std::string_view text, std::string_view prefix);
bool hasSuffix(std::string_view text, std::string_view suffix);
/// Orders texts by the code points of their canonical forms. Letter case matters.
bool precedes(std::string_view a, std::string_view b);

/// Compares as a list for people is sorted, ignoring letter case. Returns a number less than, equal to or
/// greater than 0.
int localizedCaseInsensitiveCompare(std::string_view a, std::string_view b);
/// Ignores letter case; accents matter. Returns false if `part` is empty.
bool localizedCaseInsensitiveContains(std::string_view text, std::string_view part);
std::string lowercased(std::string_view text);
/// Some characters become several letters, as "ß" becomes "SS".
std::string uppercased(std::string_view text);

/// Removes spaces and tabs of every kind from both ends, but not line ends.
std::string trimmingWhitespace(std::string_view text);
/// Removes spaces, tabs and line ends of every kind from both ends.
std::string trimmingWhitespaceAndNewlines(std::string_view text);

/// Replaces every occurrence of a word, compared byte by byte, by another text. What comes together by that
/// isn't replaced. The word must not be empty.
std::string replacing(std::string_view text, std::string_view word, std::string_view other);

/// Returns the first `count` characters as people count them (grapheme clusters).
std::string prefix(std::string_view text, std::size_t count);
/// Returns how many characters a text has, counted in the same way.
std::size_t characterCount(std::string_view text);

/// Splits a text at line feeds and leaves out empty pieces.
std::vector<std::string_view> nonEmptyLines(std::string_view text);
/// Splits a text at line ends of every kind (CR, LF, CRLF and those of Unicode) and leaves out empty pieces.
std::vector<std::string_view> nonEmptyLinesOfAnyEnd(std::string_view text);

}  // namespace quarn::Text
