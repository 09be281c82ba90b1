#include "Platform/Text.h"

#include <algorithm>

#include "Platform/system/Unicode.h"

// Most texts are plain ASCII. For them every rule here works on bytes, so the Unicode tables, which have to
// be loaded first, aren't needed.
namespace quarn::Text {

namespace {

bool isASCII(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

/// Returns whether a text is handled as bytes: ASCII, or not valid UTF-8.
bool isReadAsBytes(std::string_view text) {
  return isASCII(text) || !isUTF8(text);
}

std::string lowercasedBytes(std::string_view text) {
  std::string result(text);
  for (char& c : result) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return result;
}

std::string uppercasedBytes(std::string_view text) {
  std::string result(text);
  for (char& c : result) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  return result;
}

/// Returns how many bytes the first `count` characters of an ASCII text take. CRLF is one character (Unicode
/// Standard Annex 29).
std::size_t prefixLengthOfASCII(std::string_view text, std::size_t count) {
  std::size_t end = 0;
  for (; count > 0 && end < text.size(); --count) end += text.substr(end, 2) == "\r\n" ? 2 : 1;
  return end;
}

}  // namespace

std::string canonical(std::string_view text) {
  return isReadAsBytes(text) ? std::string(text) : Unicode::canonical(text);
}

bool equal(std::string_view a, std::string_view b) {
  if (a == b) return true;
  // Canonical equivalence can make texts of different bytes equal only if one of them isn't ASCII.
  return !(isASCII(a) && isASCII(b)) && canonical(a) == canonical(b);
}

bool hasPrefix(std::string_view text, std::string_view prefix) {
  if (isASCII(text) && isASCII(prefix)) return text.starts_with(prefix);
  return canonical(text).starts_with(canonical(prefix));
}

bool hasSuffix(std::string_view text, std::string_view suffix) {
  if (isASCII(text) && isASCII(suffix)) return text.ends_with(suffix);
  return canonical(text).ends_with(canonical(suffix));
}

bool precedes(std::string_view a, std::string_view b) {
  if (isASCII(a) && isASCII(b)) return a < b;
  return canonical(a) < canonical(b);
}

int localizedCaseInsensitiveCompare(std::string_view a, std::string_view b) {
  return Unicode::compare(a, b);
}

bool localizedCaseInsensitiveContains(std::string_view text, std::string_view part) {
  if (part.empty()) return false;
  if (isReadAsBytes(text) && isReadAsBytes(part)) {
    return lowercasedBytes(text).find(lowercasedBytes(part)) != std::string::npos;
  }
  return Unicode::contains(text, part);
}

std::string lowercased(std::string_view text) {
  return isReadAsBytes(text) ? lowercasedBytes(text) : Unicode::lowercased(text);
}

std::string uppercased(std::string_view text) {
  return isReadAsBytes(text) ? uppercasedBytes(text) : Unicode::uppercased(text);
}

std::string prefix(std::string_view text, std::size_t count) {
  return std::string(
      text.substr(0, isASCII(text) ? prefixLengthOfASCII(text, count) : Unicode::prefixLength(text, count)));
}

std::size_t characterCount(std::string_view text) {
  if (!isASCII(text)) return Unicode::characterCount(text);
  std::size_t count = 0;
  for (std::size_t end = 0; end < text.size(); end += prefixLengthOfASCII(text.substr(end), 1)) ++count;
  return count;
}

}  // namespace quarn::Text
