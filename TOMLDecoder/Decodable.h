#pragma once

#include <concepts>
#include <map>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

#include "TOMLDecoder/Decoding.h"
#include "TOMLDecoder/LeafReading.h"

namespace toml {

/// A record says how it is decoded in one static function:
///
///     struct Point {
///       double x, y;
///       static Point decode(const toml::Decoding& from) {
///         const auto keyed = from.keyed();
///         return {keyed.decode<double>("x"), keyed.decode<double>("y")};
///       }
///     };
template <typename T>
concept Record = requires(const Decoding& from) {
  { T::decode(from) } -> std::same_as<T>;
};

template <typename T>
struct IsDecodable : std::bool_constant<LeafReading::Leaf<T> || Record<T>> {};
template <typename T>
struct IsDecodable<std::optional<T>> : IsDecodable<T> {};
template <typename T>
struct IsDecodable<std::vector<T>> : IsDecodable<T> {};
template <typename T>
struct IsDecodable<std::map<std::string, T>> : IsDecodable<T> {};

/// Whatever can be decoded: values, records, and lists, maps and optionals of them. Another type doesn't
/// compile.
template <typename T>
concept Decodable = IsDecodable<T>::value;

/// What errors call a type.
template <Decodable T>
const char* decodableName() {
  if constexpr (LeafReading::Leaf<T>) return LeafReading::nameOf<T>();
  return "table or array";
}

template <typename T>
inline constexpr bool isOptional = false;
template <typename T>
inline constexpr bool isOptional<std::optional<T>> = true;

}  // namespace toml
