#include "Platform/RegularExpression.h"

#include <unicode/regex.h>
#include <unicode/utext.h>

namespace quarn {

struct RegularExpression::Compiled {
  std::unique_ptr<icu::RegexPattern> pattern;  // null if it doesn't compile
};

RegularExpression::RegularExpression(std::string_view pattern) : compiled_(std::make_unique<Compiled>()) {
  UErrorCode status = U_ZERO_ERROR;
  UParseError position;
  const icu::StringPiece bytes(pattern.data(), static_cast<std::int32_t>(pattern.size()));
  compiled_->pattern.reset(icu::RegexPattern::compile(icu::UnicodeString::fromUTF8(bytes), position, status));
}

RegularExpression::~RegularExpression() = default;

std::vector<std::string> RegularExpression::captures(std::string_view text, int number) const {
  if (!compiled_->pattern) return {};
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<UText, decltype(&utext_close)> source(
      utext_openUTF8(nullptr, text.data(), static_cast<std::int64_t>(text.size()), &status), utext_close);
  const std::unique_ptr<icu::RegexMatcher> matcher(compiled_->pattern->matcher(status));
  if (U_FAILURE(status)) return {};
  matcher->reset(source.get());
  std::vector<std::string> found;
  while (matcher->find(status) && U_SUCCESS(status)) {
    const auto begin = matcher->start64(number, status);
    const auto end = matcher->end64(number, status);
    if (U_FAILURE(status)) break;
    if (begin >= 0) {
      found.emplace_back(text.substr(static_cast<std::size_t>(begin), static_cast<std::size_t>(end - begin)));
    }
  }
  return found;
}

}  // namespace quarn
