#include <algorithm>
#include <array>

#include "Platform/Text.h"
#include "Platform/UTF8.h"

// What needs no Unicode tables lies apart, so that a program which uses nothing else doesn't link them.
namespace quarn::Text {

namespace {

constexpr std::array<std::string_view, 19> spaces{
    "\t",     " ",      "\u00A0", "\u1680", "\u2000", "\u2001", "\u2002", "\u2003", "\u2004", "\u2005",
    "\u2006", "\u2007", "\u2008", "\u2009", "\u200A", "\u200B", "\u202F", "\u205F", "\u3000",
};
constexpr std::array<std::string_view, 7> newlines{"\n", "\v", "\f", "\r", "\u0085", "\u2028", "\u2029"};

/// Returns the length of the first of `characters` for which `stands` is true, or 0 if there is none.
template <class Characters, class Stands>
std::size_t lengthOfOne(const Characters& characters, Stands stands) {
  const auto found = std::find_if(characters.begin(), characters.end(), stands);
  return found == characters.end() ? 0 : found->size();
}

/// Removes from both ends every character for which `length` returns more than 0.
template <class Length>
std::string trimming(std::string_view text, Length length) {
  const auto atStart = [&](std::string_view character) { return text.starts_with(character); };
  const auto atEnd = [&](std::string_view character) { return text.ends_with(character); };
  while (const auto count = length(atStart)) text.remove_prefix(count);
  while (const auto count = length(atEnd)) text.remove_suffix(count);
  return std::string(text);
}

}  // namespace

bool isUTF8(std::string_view bytes) {
  UTF8Check check;
  check.take(bytes);
  return check.isText();
}

std::optional<std::string> decodingFile(std::string_view bytes) {
  constexpr std::string_view byteOrderMark = "\uFEFF";
  if (!isUTF8(bytes)) return std::nullopt;
  if (bytes.starts_with(byteOrderMark)) bytes.remove_prefix(byteOrderMark.size());
  return std::string(bytes);
}

std::string replacing(std::string_view text, std::string_view word, std::string_view other) {
  std::string result;
  for (auto at = text.find(word); at != std::string_view::npos; at = text.find(word)) {
    result.append(text.substr(0, at)).append(other);
    text.remove_prefix(at + word.size());
  }
  return result.append(text);
}

std::string trimmingWhitespace(std::string_view text) {
  return trimming(text, [](auto stands) { return lengthOfOne(spaces, stands); });
}

std::string trimmingWhitespaceAndNewlines(std::string_view text) {
  return trimming(text, [](auto stands) {
    const auto space = lengthOfOne(spaces, stands);
    return space ? space : lengthOfOne(newlines, stands);
  });
}

std::vector<std::string_view> nonEmptyLines(std::string_view text) {
  std::vector<std::string_view> lines;
  while (!text.empty()) {
    const auto end = std::min(text.find('\n'), text.size());
    if (end > 0) lines.push_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return lines;
}

std::vector<std::string_view> nonEmptyLinesOfAnyEnd(std::string_view text) {
  std::vector<std::string_view> lines;
  std::size_t begin = 0;
  std::size_t end = 0;
  const auto finishLine = [&] {
    if (end > begin) lines.push_back(text.substr(begin, end - begin));
  };
  while (end < text.size()) {
    const auto newline = lengthOfOne(
        newlines, [&](std::string_view character) { return text.substr(end).starts_with(character); });
    if (newline > 0) {
      finishLine();
      begin = end + newline;
    }
    // A newline of several bytes never begins inside another character, because UTF-8 is self-synchronizing.
    end += std::max<std::size_t>(newline, 1);
  }
  finishLine();
  return lines;
}

}  // namespace quarn::Text
