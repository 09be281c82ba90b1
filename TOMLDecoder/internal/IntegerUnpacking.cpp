#include <string>

#include "TOMLDecoder/TOMLError.h"
#include "TOMLDecoder/internal/Unpacking.h"

namespace toml::IntegerUnpacking {

namespace {

[[noreturn]] void fail(std::string message) {
  throw TOMLError({.kind = TOMLError::Reason::Kind::invalidInteger, .message = std::move(message)});
}

/// The value of a digit of any base; 99 for a byte that isn't one.
unsigned digitValue(char byte) {
  if (byte >= '0' && byte <= '9') return static_cast<unsigned>(byte - '0');
  if (byte >= 'a' && byte <= 'f') return static_cast<unsigned>(byte - 'a') + 10;
  if (byte >= 'A' && byte <= 'F') return static_cast<unsigned>(byte - 'A') + 10;
  return 99;
}

unsigned baseOf(std::string_view digits) {
  if (digits.size() < 2 || digits[0] != '0') return 10;
  if (digits[1] == 'x') return 16;
  if (digits[1] == 'o') return 8;
  return digits[1] == 'b' ? 2 : 10;
}

void checkSign(unsigned base) {
  if (base == 16) fail("hexadecimal integers cannot have explicit signs");
  if (base == 8) fail("octal integers cannot have explicit signs");
  if (base == 2) fail("binary integers cannot have explicit signs");
}

void checkUnderscores(std::string_view digits, unsigned base) {
  if (digits.empty() || digits.find('_') == std::string_view::npos) return;
  if (digits.front() == '_') fail("cannot use '_' adjacent to a non-digit");
  if (digits.back() == '_') fail("cannot end with a '_'");
  for (std::size_t index = 1; index + 1 < digits.size(); ++index) {
    if (digits[index] != '_') continue;
    if (digits[index + 1] == '_') fail("cannot contain consecutive '_'");
    if (digitValue(digits[index - 1]) >= base || digitValue(digits[index + 1]) >= base) {
      fail("cannot use '_' adjacent to a non-digit");
    }
  }
}

[[noreturn]] void failAsNumber(std::string_view token, unsigned base) {
  fail(std::string(token) + " is a invalid integer of base " + std::to_string(base));
}

/// The number without its sign; at most `most`.
std::uint64_t magnitude(std::string_view digits, unsigned base, std::uint64_t most, std::string_view token) {
  if (digits.empty()) failAsNumber(token, base);
  std::uint64_t number = 0;
  for (const char byte : digits) {
    if (byte == '_') continue;
    const unsigned digit = digitValue(byte);
    if (digit >= base) fail("invalid digit for base " + std::to_string(base) + ": '" + byte + "'");
    if (number > (most - digit) / base) failAsNumber(token, base);
    number = number * base + digit;
  }
  return number;
}

}  // namespace

std::int64_t unpack(std::string_view token) {
  std::string_view digits = token;
  if (digits.substr(0, 1) == "_") fail("cannot start with a '_'");
  const bool hasSign = digits.substr(0, 1) == "+" || digits.substr(0, 1) == "-";
  if (hasSign) digits.remove_prefix(1);
  const unsigned base = baseOf(digits);
  if (hasSign) checkSign(base);
  if (base != 10) digits.remove_prefix(2);
  checkUnderscores(digits, base);
  if (base == 10 && digits.size() > 1 && digits.front() == '0')
    fail("decimal integers cannot have leading zeros");
  const bool isNegative = token.front() == '-';
  const std::uint64_t most = std::uint64_t{INT64_MAX} + (isNegative ? 1 : 0);
  const std::uint64_t number = magnitude(digits, base, most, token);
  return static_cast<std::int64_t>(isNegative ? 0 - number : number);
}

}  // namespace toml::IntegerUnpacking
