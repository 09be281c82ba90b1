#include "TOMLDecoder/internal/NumberConversion.h"

#include <cmath>

#include "TOMLDecoder/TOMLError.h"
#include "TOMLDecoder/internal/ValueUnpacking.h"

namespace toml::NumberConversion {

namespace {

using Kind = TOMLError::Reason::Kind;

[[noreturn]] void fail(const TOMLDocument& document, TextRange value, const std::string& fault) {
  throw TOMLError({.kind = Kind::invalidNumber,
                   .lineNumber = document.lineNumber(value.offset),
                   .message = std::string(document.text(value)) + fault});
}

}  // namespace

std::int64_t integer(const TOMLDocument& document, TextRange value, bool isLenient) {
  if (!isLenient || valueKindOf(document.text(value)) != ValueKind::floatingPoint) {
    return unpackValue<std::int64_t>(document, value);
  }
  const double number = unpackValue<double>(document, value);
  // The bounds are powers of two, so that they are doubles themselves.
  const bool fits = number >= -0x1p63 && number < 0x1p63;
  if (!fits || std::trunc(number) != number) fail(document, value, " cannot be represented by type Int64.");
  return static_cast<std::int64_t>(number);
}

double floatingPoint(const TOMLDocument& document, TextRange value, bool isLenient) {
  if (isLenient && valueKindOf(document.text(value)) == ValueKind::integer) {
    return static_cast<double>(unpackValue<std::int64_t>(document, value));
  }
  return unpackValue<double>(document, value);
}

float narrowFloat(const TOMLDocument& document, TextRange value, bool isLenient) {
  using Limits = std::numeric_limits<float>;
  // Numbers below it round to the largest float. The shortest text of that one denotes a number above it.
  constexpr double firstBeyond = 0x1.ffffffp127;
  const double number = floatingPoint(document, value, isLenient);
  if (!std::isfinite(number) || std::abs(number) < firstBeyond) return static_cast<float>(number);
  if (!isLenient) {
    fail(document, value, " cannot be represented by type Float. Use Double or lenient decoding strategy.");
  }
  return number < 0 ? -Limits::infinity() : Limits::infinity();
}

void failAsInteger(const TOMLDocument& document, TextRange value, const std::string& typeName) {
  fail(document, value,
       " cannot be represented by type " + typeName + ". Use Int64 or lenient decoding strategy.");
}

}  // namespace toml::NumberConversion
