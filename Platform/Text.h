#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Text as people read it. Texts are UTF-8; bytes that are none are kept as they are and compare as
/// bytes. All pure.
namespace quarn::Text {

bool isUTF8(std::string_view bytes);
/// The text of a file or of a tool's output; nothing if a byte is no UTF-8. A leading byte-order mark
/// is dropped from a file.
std::optional<std::string> decodingFile(std::string_view bytes);

/// One spelling for all canonically equivalent ones (NFC); the key to use in sets and maps of names.
std::string canonical(std::string_view text);
/// Equal by canonical equivalence, case-sensitive.
bool equal(std::string_view a, std::string_view b);
bool hasPrefix(std::string_view text, std::string_view prefix);
bool hasSuffix(std::string_view text, std::string_view suffix);
/// Plain ascending order of texts: by code point of the canonical form, case-sensitive.
bool precedes(std::string_view a, std::string_view b);

/// Less than, equal to or greater than 0, as a person's list is sorted, letter case aside.
int localizedCaseInsensitiveCompare(std::string_view a, std::string_view b);
/// Letter case aside; accents matter. An empty `part` is contained in nothing.
bool localizedCaseInsensitiveContains(std::string_view text, std::string_view part);
std::string lowercased(std::string_view text);

/// Blanks of every kind off both ends; line ends stay.
std::string trimmingBlanks(std::string_view text);
/// Blanks and line ends off both ends.
std::string trimmingBlanksAndNewlines(std::string_view text);

/// The first `count` characters as people count them (grapheme clusters).
std::string prefix(std::string_view text, std::size_t count);

/// Pieces between line feeds, empty ones left out.
std::vector<std::string_view> nonEmptyLines(std::string_view text);
/// The same between line ends of every kind: CR LF and CR alone, and those of Unicode.
std::vector<std::string_view> nonEmptyLinesOfAnyEnd(std::string_view text);

}  // namespace quarn::Text
