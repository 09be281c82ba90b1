#include "Platform/Text.h"

#include <algorithm>
#include <memory>
#include <unicode/brkiter.h>
#include <unicode/coll.h>
#include <unicode/normalizer2.h>
#include <unicode/unistr.h>
#include <unicode/utext.h>
#include <unicode/utf8.h>

// Most texts are plain ASCII. For them every rule here is a rule of bytes, and ICU, which first has to read
// its tables, isn't asked.
namespace quarn::Text {

namespace {

bool isASCII(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

/// Whether bytes are all that is needed: ASCII, or bytes that are no text.
bool isReadAsBytes(std::string_view text) {
  return isASCII(text) || !isUTF8(text);
}

std::int32_t length(std::string_view text) {
  return static_cast<std::int32_t>(text.size());
}

icu::StringPiece piece(std::string_view text) {
  return {text.data(), length(text)};
}

icu::UnicodeString wide(std::string_view text) {
  return icu::UnicodeString::fromUTF8(piece(text));
}

std::string narrow(const icu::UnicodeString& text) {
  std::string result;
  return text.toUTF8String(result);
}

std::string lowercasedBytes(std::string_view text) {
  std::string result(text);
  for (char& c : result) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return result;
}

/// Letter case taken off, the spelling made one.
std::string folded(std::string_view text) {
  return canonical(narrow(wide(canonical(text)).foldCase()));
}

std::unique_ptr<icu::Collator> makeCollator() {
  UErrorCode status = U_ZERO_ERROR;
  std::unique_ptr<icu::Collator> collator(icu::Collator::createInstance(icu::Locale::getUS(), status));
  collator->setAttribute(UCOL_STRENGTH, UCOL_SECONDARY, status);
  collator->setAttribute(UCOL_ALTERNATE_HANDLING, UCOL_NON_IGNORABLE, status);
  collator->setAttribute(UCOL_NUMERIC_COLLATION, UCOL_OFF, status);
  collator->setAttribute(UCOL_NORMALIZATION_MODE, UCOL_ON, status);
  return collator;
}

bool isBlank(UChar32 c) {
  return c == '\t' || c == ' ' || c == 0xA0 || c == 0x1680 || (c >= 0x2000 && c <= 0x200B) || c == 0x202F ||
         c == 0x205F || c == 0x3000;
}

bool isBlankOrNewline(UChar32 c) {
  return isBlank(c) || (c >= '\n' && c <= '\r') || c == 0x85 || c == 0x2028 || c == 0x2029;
}

std::string trimming(std::string_view text, bool (*isTrimmed)(UChar32)) {
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  std::int32_t begin = 0;
  std::int32_t end = length(text);
  for (std::int32_t next = 0; next < end;) {
    UChar32 c;
    U8_NEXT(bytes, next, end, c);
    if (!isTrimmed(c)) break;
    begin = next;
  }
  for (std::int32_t previous = end; previous > begin;) {
    UChar32 c;
    U8_PREV(bytes, begin, previous, c);
    if (!isTrimmed(c)) break;
    end = previous;
  }
  return std::string(text.substr(static_cast<std::size_t>(begin), static_cast<std::size_t>(end - begin)));
}

/// How many bytes the first `count` characters of an ASCII text take; CR and LF together are one character.
std::size_t prefixLengthOfASCII(std::string_view text, std::size_t count) {
  std::size_t end = 0;
  for (; count > 0 && end < text.size(); --count) end += text.substr(end, 2) == "\r\n" ? 2 : 1;
  return end;
}

std::size_t prefixLength(std::string_view text, std::size_t count) {
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<icu::BreakIterator> characters(
      icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
  const std::unique_ptr<UText, decltype(&utext_close)> source(
      utext_openUTF8(nullptr, text.data(), length(text), &status), utext_close);
  characters->setText(source.get(), status);
  const auto end = characters->next(static_cast<std::int32_t>(std::min(count, text.size())));
  return end == icu::BreakIterator::DONE ? text.size() : static_cast<std::size_t>(end);
}

}  // namespace

bool isUTF8(std::string_view bytes) {
  const auto* first = reinterpret_cast<const std::uint8_t*>(bytes.data());
  for (std::size_t i = 0; i < bytes.size();) {
    UChar32 c;
    U8_NEXT(first, i, bytes.size(), c);
    if (c < 0) return false;
  }
  return true;
}

std::optional<std::string> decodingFile(std::string_view bytes) {
  constexpr std::string_view byteOrderMark = "\uFEFF";
  if (!isUTF8(bytes)) return std::nullopt;
  if (bytes.starts_with(byteOrderMark)) bytes.remove_prefix(byteOrderMark.size());
  return std::string(bytes);
}

std::string canonical(std::string_view text) {
  if (isReadAsBytes(text)) return std::string(text);
  UErrorCode status = U_ZERO_ERROR;
  std::string result;
  icu::StringByteSink<std::string> sink(&result);
  icu::Normalizer2::getNFCInstance(status)->normalizeUTF8(0, piece(text), sink, nullptr, status);
  return result;
}

bool equal(std::string_view a, std::string_view b) {
  if (a == b) return true;
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
  static const auto collator = makeCollator();
  UErrorCode status = U_ZERO_ERROR;
  return collator->compareUTF8(piece(a), piece(b), status);
}

bool localizedCaseInsensitiveContains(std::string_view text, std::string_view part) {
  if (part.empty()) return false;
  if (isReadAsBytes(text) && isReadAsBytes(part)) {
    return lowercasedBytes(text).find(lowercasedBytes(part)) != std::string::npos;
  }
  return folded(text).find(folded(part)) != std::string::npos;
}

std::string lowercased(std::string_view text) {
  if (isReadAsBytes(text)) return lowercasedBytes(text);
  // One by one: a capital sigma at the end of a word becomes the same small one as anywhere else.
  const auto source = wide(text);
  icu::UnicodeString result;
  for (std::int32_t i = 0; i < source.length(); i = source.moveIndex32(i, 1)) {
    result += icu::UnicodeString(source.char32At(i)).toLower(icu::Locale::getRoot());
  }
  return narrow(result);
}

std::string trimmingBlanks(std::string_view text) {
  return trimming(text, isBlank);
}

std::string trimmingBlanksAndNewlines(std::string_view text) {
  return trimming(text, isBlankOrNewline);
}

std::string prefix(std::string_view text, std::size_t count) {
  return std::string(
      text.substr(0, isASCII(text) ? prefixLengthOfASCII(text, count) : prefixLength(text, count)));
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

}  // namespace quarn::Text
