#pragma once

#include <cstdint>
#include <string>

#include "TOMLDecoder/DateTime.h"

// The kinds of what a document holds, and the types that its values are read as.
namespace toml {

/// What stands under a key or in a place of an array; `none` where there is nothing.
enum class ItemKind : std::uint32_t { none, value, array, table };

/// What all elements of an array are; `none` for an empty array.
enum class ArrayKind : std::uint8_t { none, value, array, table, mixed };

/// What a value is, judged by how it is written. Whether it is written correctly shows when it is read.
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

/// How errors call the types that values are read as.
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

/// A type that a value can be read as directly: std::string, std::int64_t, double, bool, or one of the four
/// dates and times.
template <typename T>
concept ReadableValue = typeName<T>
!= nullptr;

}  // namespace toml
