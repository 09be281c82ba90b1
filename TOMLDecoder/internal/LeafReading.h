#pragma once

#include <concepts>

#include "TOMLDecoder/internal/DecodingState.h"
#include "TOMLDecoder/internal/NumberConversion.h"
#include "TOMLDecoder/internal/ValueUnpacking.h"

namespace toml {

/// Reads a value as a type that has no parts of its own.
namespace LeafReading {

template <typename T>
concept DateRecord = std::same_as<T, OffsetDateTime> || std::same_as<T, LocalDateTime> ||
    std::same_as<T, LocalDate> || std::same_as<T, LocalTime>;

template <typename T>
concept Leaf =
    ReadableValue<T> || NumberConversion::SizedInteger<T> || std::same_as<T, float> || std::same_as<T, Date>;

/// What errors call a type.
template <Leaf T>
const char* nameOf() {
  if constexpr (ReadableValue<T>) {
    return typeName<T>;
  } else if constexpr (std::same_as<T, Date>) {
    return "date";
  } else {
    return std::integral<T> ? "integer" : "float";
  }
}

/// A date and time, a date (its midnight), both in Greenwich if they have no offset, or a number of seconds.
Date date(const DecodingState& state, TextRange value);

/// Throws TOMLError if the content isn't a value: `typeMismatchInTable` or `typeMismatchInArray`; at the
/// root, where `key` is null, `notReallyCodable` for the date records and `typeMismatch` for all else.
void checkIsValue(const DecodingState& state, const Content& content, const TOMLKey* key,
                  const char* expected, bool isDateRecord);

template <Leaf T>
T read(const DecodingState& state, const Content& content, const TOMLKey* key) {
  checkIsValue(state, content, key, nameOf<T>(), DateRecord<T>);
  const TOMLDocument& document = state.document;
  if constexpr (std::same_as<T, Date>) {
    return date(state, content.token);
  } else if constexpr (NumberConversion::SizedInteger<T>) {
    return NumberConversion::sizedInteger<T>(document, content.token, state.isLenient);
  } else if constexpr (std::same_as<T, float>) {
    return NumberConversion::narrowFloat(document, content.token, state.isLenient);
  } else if constexpr (std::same_as<T, double>) {
    return NumberConversion::floatingPoint(document, content.token, state.isLenient);
  } else {
    return unpackValue<T>(document, content.token);
  }
}

}  // namespace LeafReading

}  // namespace toml
