#include "Platform/plist/XMLScalars.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdlib>
#include <limits>

#include "Platform/plist/Words.h"
#include "Platform/plist/XMLScanner.h"

namespace quarn::XMLScalars {

namespace {

std::string_view withoutLeadingBlanks(std::string_view text) {
  while (!text.empty() && XMLScanner::isBlank(text.front())) text.remove_prefix(1);
  return text;
}

bool take(std::string_view& text, std::string_view expected) {
  if (!text.starts_with(expected)) return false;
  text.remove_prefix(expected.size());
  return true;
}

bool takeMinus(std::string_view& text) {
  const bool isNegative = take(text, "-");
  if (!isNegative) take(text, "+");
  return isNegative;
}

/// Reads a number without its sign.
std::optional<double> magnitude(std::string_view text) {
  const std::string word = lowercasedWord(text);
  if (word == "nan") return std::numeric_limits<double>::quiet_NaN();
  if (word == "inf" || word == "infinity") return std::numeric_limits<double>::infinity();
  // strtod(3) would also accept white space, a second sign and hexadecimal numbers.
  if (word.find_first_not_of("0123456789.e+-") != std::string::npos) return std::nullopt;
  if (word.empty() || word.front() == '+' || word.front() == '-') return std::nullopt;
  char* end = nullptr;
  const double number = std::strtod(word.c_str(), &end);
  if (end != word.c_str() + word.size()) return std::nullopt;
  return number;
}

int number(std::string_view digits) {
  int value = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), value);
  return value;
}

bool looksLike(std::string_view text, std::string_view pattern) {
  const auto fits = [](char c, char wanted) { return wanted == '0' ? c >= '0' && c <= '9' : c == wanted; };
  return std::equal(text.begin(), text.end(), pattern.begin(), pattern.end(), fits);
}

/// The six bits that a character of base64 stands for.
std::optional<std::uint32_t> sixBits(char c) {
  constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  const auto found = alphabet.find(c);
  if (found == std::string_view::npos) return std::nullopt;
  return static_cast<std::uint32_t>(found);
}

}  // namespace

std::optional<PropertyList::Integer> integer(std::string_view text) {
  text = withoutLeadingBlanks(text);
  const bool isNegative = takeMinus(text);
  const bool isHexadecimal = take(text, "0x") || take(text, "0X");
  // The lowest 64-bit number: its magnitude has no positive counterpart.
  constexpr std::uint64_t lowest = std::uint64_t{1} << 63;
  std::uint64_t value = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value, isHexadecimal ? 16 : 10);
  if (error != std::errc() || stop != end || (isNegative && value > lowest)) return std::nullopt;
  if (!isNegative || value == 0) return PropertyList::Integer{0, value};
  return PropertyList::Integer{-1, 0 - value};
}

std::optional<double> real(std::string_view text) {
  text = withoutLeadingBlanks(text);
  const bool isNegative = takeMinus(text);
  const auto found = magnitude(text);
  if (!found) return std::nullopt;
  return isNegative ? -*found : *found;
}

std::optional<PropertyList::Date> date(std::string_view text) {
  using namespace std::chrono;
  if (!looksLike(text, "0000-00-00T00:00:00Z")) return std::nullopt;
  const auto field = [&](std::size_t start, std::size_t length) {
    return number(text.substr(start, length));
  };
  constexpr sys_days reference = year{2001} / January / 1;
  const year_month firstMonth = year{field(0, 4)} / January;
  // Added to the first day of the year, because a month or day out of range must be carried over.
  const sys_days firstDay = (firstMonth + months{field(5, 2) - 1}) / 1;
  const auto day = firstDay + days{field(8, 2) - 1};
  const auto time = hours{field(11, 2)} + minutes{field(14, 2)} + seconds{field(17, 2)};
  return PropertyList::Date{static_cast<double>(seconds{day - reference + time}.count())};
}

std::optional<PropertyList::Data> data(std::string_view text) {
  PropertyList::Data result;
  std::uint32_t group = 0;
  int taken = 0;
  int padding = 0;
  for (const char c : text) {
    // A Mac refuses bytes outside ASCII here.
    if (static_cast<signed char>(c) < 0) return std::nullopt;
    const auto bits = c == '=' ? 0 : sixBits(c);
    if (!bits) continue;
    // Padding counts only at the end of a group.
    padding = c == '=' ? padding + 1 : 0;
    group = group << 6 | *bits;
    if (++taken % 4 != 0) continue;
    for (int i = 0; i < 3 - padding; ++i) result.bytes += static_cast<char>(group >> (16 - 8 * i));
  }
  return result;
}

PropertyList::UID uid(double number) {
  const bool fits = number >= 0 && number <= std::numeric_limits<std::uint32_t>::max();
  return {fits ? static_cast<std::uint32_t>(number) : 0};
}

}  // namespace quarn::XMLScalars
