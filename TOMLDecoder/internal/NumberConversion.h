#pragma once

#include <concepts>
#include <cstdint>
#include <limits>
#include <string>
#include <type_traits>

#include "TOMLDecoder/internal/TOMLDocument.h"

namespace toml {

/// Numbers of the sizes that a record may ask for. Lenient reading takes more than strict reading does: an
/// integer beyond the type as the nearest one that it has; a float without a fraction as an integer; an
/// integer as a float, rounded; and a float beyond the type as an infinite one.
namespace NumberConversion {

/// Throw TOMLError with the line: what unpacking finds wrong, and `invalidNumber` for a number that the type
/// can't hold.
std::int64_t integer(const TOMLDocument& document, TextRange value, bool isLenient);
double floatingPoint(const TOMLDocument& document, TextRange value, bool isLenient);
float narrowFloat(const TOMLDocument& document, TextRange value, bool isLenient);

[[noreturn]] void failAsInteger(const TOMLDocument& document, TextRange value, const std::string& typeName);

template <typename T>
concept SizedInteger =
    std::integral<T> && !std::same_as<T, bool> && !std::same_as<T, char> && !std::same_as<T, wchar_t> &&
    !std::same_as<T, char8_t> && !std::same_as<T, char16_t> && !std::same_as<T, char32_t>;

/// Int for the C++ type of that name, and the others by their sign and size.
template <SizedInteger T>
std::string integerName() {
  const std::string name = std::is_signed_v<T> ? "Int" : "UInt";
  return std::is_same_v<std::make_signed_t<T>, int> ? name : name + std::to_string(sizeof(T) * 8);
}

template <SizedInteger T>
T sizedInteger(const TOMLDocument& document, TextRange value, bool isLenient) {
  using Limits = std::numeric_limits<T>;
  const std::int64_t number = integer(document, value, isLenient);
  if (std::in_range<T>(number)) return static_cast<T>(number);
  if (!isLenient) failAsInteger(document, value, integerName<T>());
  return number < 0 ? Limits::min() : Limits::max();
}

}  // namespace NumberConversion

}  // namespace toml
