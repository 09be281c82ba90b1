#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <string>

#include "TOMLDecoder/TOMLError.h"
#include "TOMLDecoder/internal/Unpacking.h"

namespace toml::FloatUnpacking {

namespace {

[[noreturn]] void fail(std::string message) {
  throw TOMLError({.kind = TOMLError::Reason::Kind::invalidFloat, .message = std::move(message)});
}

bool isDigit(char byte) {
  return byte >= '0' && byte <= '9';
}
bool isExponentMark(char byte) {
  return byte == 'e' || byte == 'E';
}

bool isDigitAt(std::string_view text, std::size_t index) {
  return index < text.size() && isDigit(text[index]);
}

/// Digits with underscores in between, from `index` on; gives the index after them.
std::size_t skipDigits(std::string_view text, std::size_t index) {
  for (; index < text.size(); ++index) {
    if (text[index] == '_') {
      if (index == 0 || !isDigit(text[index - 1])) fail("'_' must be preceded by a digit");
      if (!isDigitAt(text, index + 1)) fail("'_' must be follewed by a digit");
    } else if (!isDigit(text[index])) {
      break;
    }
  }
  return index;
}

std::size_t skipWhole(std::string_view text, bool hasSign) {
  if (text.empty()) fail("invalid character for float");
  if (text.front() == '.') {
    fail(hasSign ? "'.' must be preceded by a decimal digit" : "First digit of floats cannot be '.'");
  }
  const std::size_t end = skipDigits(text, 0);
  if (end == 0) fail("invalid character for float");
  if (text.front() == '0' && end > 1) fail("Float begins with 0 must be followed by a '.', 'e' or 'E'");
  return end;
}

std::size_t skipFraction(std::string_view text, std::size_t index) {
  if (index == text.size() || text[index] != '.') return index;
  if (!isDigitAt(text, index + 1)) fail("A digit must follow '.'");
  return skipDigits(text, index + 1);
}

std::size_t skipExponent(std::string_view text, std::size_t index) {
  if (index == text.size() || !isExponentMark(text[index])) return index;
  ++index;
  if (index < text.size() && (text[index] == '+' || text[index] == '-')) ++index;
  if (index < text.size() && text[index] == '.') fail("'.' must be preceded by a decimal digit");
  const std::size_t end = skipDigits(text, index);
  if (end == index) fail("invalid character for float");
  if (end < text.size() && text[end] == '.') fail("'.' must be preceded by a decimal digit");
  return end;
}

void check(std::string_view unsignedText, bool hasSign) {
  const std::size_t whole = skipWhole(unsignedText, hasSign);
  const std::size_t end = skipExponent(unsignedText, skipFraction(unsignedText, whole));
  if (end == whole && end == unsignedText.size()) {
    if (unsignedText == "0") fail("Float begins with 0 must be followed by a '.', 'e' or 'E'");
    fail(std::string(unsignedText) + " is an integer");
  }
  if (end < unsignedText.size()) fail("invalid character for float");
}

/// The number of a text that is known to be one. Few digits and a small power of ten are exact as doubles, so
/// that one division rounds correctly (Clinger, "How to Read Floating Point Numbers Accurately", 1990);
/// everything else is left to strtod, which takes a full stop for the decimal point as long as nobody sets
/// another locale.
double number(const std::string& text) {
  static constexpr std::array<double, 23> powers = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                    1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                    1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
  if (text.size() > 16 || std::any_of(text.begin(), text.end(), isExponentMark)) {
    return std::strtod(text.c_str(), nullptr);
  }
  std::uint64_t digits = 0;
  std::size_t decimals = 0;
  bool isFraction = false;
  for (const char byte : text) {
    if (byte == '.') isFraction = true;
    if (!isDigit(byte)) continue;
    digits = digits * 10 + static_cast<std::uint64_t>(byte - '0');
    if (isFraction) ++decimals;
  }
  return static_cast<double>(digits) / powers[decimals];
}

}  // namespace

double unpack(std::string_view token) {
  const bool hasSign = token.substr(0, 1) == "+" || token.substr(0, 1) == "-";
  const bool isNegative = token.substr(0, 1) == "-";
  const std::string_view text = token.substr(hasSign ? 1 : 0);
  double found = 0;
  if (text == "inf") {
    found = std::numeric_limits<double>::infinity();
  } else if (text == "nan") {
    found = std::numeric_limits<double>::quiet_NaN();
  } else if (text.substr(0, 1) == "i" || text.substr(0, 1) == "n") {
    fail("Expected nan or inf, found " + std::string(text));
  } else {
    check(text, hasSign);
    std::string digits(text);
    digits.erase(std::remove(digits.begin(), digits.end(), '_'), digits.end());
    found = number(digits);
  }
  return isNegative ? -found : found;
}

}  // namespace toml::FloatUnpacking
