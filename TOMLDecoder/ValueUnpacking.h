#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "TOMLDecoder/LocalDateTime.h"
#include "TOMLDecoder/OffsetDateTime.h"
#include "TOMLDecoder/TOMLDocument.h"

namespace toml {

/// What a value is by the way it is written; whether it is a right one shows when it is unpacked.
enum class ValueKind {
  string,
  boolean,
  offsetDateTime,
  localDateTime,
  localDate,
  localTime,
  floatingPoint,
  integer,
  invalid,
};

ValueKind valueKindOf(std::string_view token);
/// Throws TOMLError `invalidValueInTable` for a value of no kind; `key` tells where it stands.
ValueKind checkedValueKind(const TOMLDocument& document, TextRange value, std::string_view key);

/// How errors and messages call the types that values are read as.
template <typename T>
inline constexpr const char* typeName = nullptr;
template <>
inline constexpr const char* typeName<std::string> = "string";
template <>
inline constexpr const char* typeName<std::int64_t> = "integer";
template <>
inline constexpr const char* typeName<double> = "float";
template <>
inline constexpr const char* typeName<bool> = "boolean";
template <>
inline constexpr const char* typeName<OffsetDateTime> = "offset date-time";
template <>
inline constexpr const char* typeName<LocalDateTime> = "local date-time";
template <>
inline constexpr const char* typeName<LocalDate> = "local date";
template <>
inline constexpr const char* typeName<LocalTime> = "local time";

/// A type that a value can be read as directly.
template <typename T>
concept ReadableValue = typeName<T>
!= nullptr;

/// The value of a range of the document. Throws TOMLError with the line of the value.
template <ReadableValue T>
T unpackValue(const TOMLDocument& document, TextRange value);

}  // namespace toml
