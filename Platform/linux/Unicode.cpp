#include "Platform/system/Unicode.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <unicode/brkiter.h>
#include <unicode/coll.h>
#include <unicode/normalizer2.h>
#include <unicode/unistr.h>
#include <unicode/utext.h>

#include "Platform/Text.h"

namespace quarn::Unicode {

namespace {

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

/// Removes differences of letter case and of canonically equivalent spellings (canonical caseless matching,
/// Unicode Standard section 3.13).
std::string folded(std::string_view text) {
  return Text::canonical(narrow(wide(Text::canonical(text)).foldCase()));
}

std::unique_ptr<icu::Collator> makeCollator() {
  UErrorCode status = U_ZERO_ERROR;
  std::unique_ptr<icu::Collator> collator(icu::Collator::createInstance(icu::Locale::getUS(), status));
  // Strength secondary ignores letter case and compares accents; non-ignorable makes spaces and punctuation
  // count; numbers are compared digit by digit. A Mac's list sorts this way.
  collator->setAttribute(UCOL_STRENGTH, UCOL_SECONDARY, status);
  collator->setAttribute(UCOL_ALTERNATE_HANDLING, UCOL_NON_IGNORABLE, status);
  collator->setAttribute(UCOL_NUMERIC_COLLATION, UCOL_OFF, status);
  collator->setAttribute(UCOL_NORMALIZATION_MODE, UCOL_ON, status);
  return collator;
}

/// The grapheme clusters of a text.
struct Characters {
  explicit Characters(std::string_view text)
      // The root locale, so that the result doesn't depend on the user's language.
      : iterator(icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status)),
        source(utext_openUTF8(nullptr, text.data(), length(text), &status), utext_close) {
    iterator->setText(source.get(), status);
  }

  UErrorCode status = U_ZERO_ERROR;
  std::unique_ptr<icu::BreakIterator> iterator;
  std::unique_ptr<UText, decltype(&utext_close)> source;
};

}  // namespace

std::string canonical(std::string_view text) {
  UErrorCode status = U_ZERO_ERROR;
  std::string result;
  icu::StringByteSink<std::string> sink(&result);
  icu::Normalizer2::getNFCInstance(status)->normalizeUTF8(0, piece(text), sink, nullptr, status);
  return result;
}

int compare(std::string_view a, std::string_view b) {
  static const auto collator = makeCollator();
  UErrorCode status = U_ZERO_ERROR;
  return collator->compareUTF8(piece(a), piece(b), status);
}

bool contains(std::string_view text, std::string_view part) {
  return folded(text).find(folded(part)) != std::string::npos;
}

/// Converted one character at a time, because ICU would turn a capital sigma at the end of a word into a
/// final sigma.
std::string lowercased(std::string_view text) {
  const auto source = wide(text);
  icu::UnicodeString result;
  for (std::int32_t i = 0; i < source.length(); i = source.moveIndex32(i, 1)) {
    result += icu::UnicodeString(source.char32At(i)).toLower(icu::Locale::getRoot());
  }
  return narrow(result);
}

std::string uppercased(std::string_view text) {
  return narrow(wide(text).toUpper(icu::Locale::getRoot()));
}

std::size_t prefixLength(std::string_view text, std::size_t count) {
  Characters characters(text);
  // A text has at most as many characters as bytes. ICU counts in 32 bits.
  const auto end = characters.iterator->next(static_cast<std::int32_t>(std::min(count, text.size())));
  return end == icu::BreakIterator::DONE ? text.size() : static_cast<std::size_t>(end);
}

std::size_t characterCount(std::string_view text) {
  Characters characters(text);
  std::size_t count = 0;
  while (characters.iterator->next() != icu::BreakIterator::DONE) ++count;
  return count;
}

}  // namespace quarn::Unicode
