#pragma once

#include <concepts>
#include <map>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

#include "TOMLDecoder/Decoding.h"
#include "TOMLDecoder/internal/LeafReading.h"

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

/// How a type is decoded that can't say so itself: an enumeration, or a type of somebody else. To be
/// specialised before the first place where the type is decoded, best beside the type:
///
///     template <>
///     struct toml::DecodingOf<std::filesystem::path> {
///       static std::filesystem::path decode(const toml::Decoding& from) { return from.decode<std::string>();
///       }
///     };
template <typename T>
struct DecodingOf;

template <typename T>
concept HasDecodingOf = requires(const Decoding& from) {
  { DecodingOf<T>::decode(from) } -> std::same_as<T>;
};

/// Whatever can be decoded: the types of `ReadableValue`, integers of every size, float, Date, records, types
/// with a `DecodingOf`, and lists, maps and optionals of all these. Another type doesn't compile.
template <typename T>
concept Decodable = LeafReading::Leaf<T> || Record<T> || HasDecodingOf<T>;

template <Decodable T>
struct DecodingOf<std::optional<T>> {
  static std::optional<T> decode(const Decoding& from);
};
/// From an array.
template <Decodable T>
struct DecodingOf<std::vector<T>> {
  static std::vector<T> decode(const Decoding& from);
};
/// From a table, whatever its keys are.
template <Decodable T>
struct DecodingOf<std::map<std::string, T>> {
  static std::map<std::string, T> decode(const Decoding& from);
};

/// What errors call a type.
template <Decodable T>
const char* decodableName() {
  if constexpr (LeafReading::Leaf<T>) return LeafReading::nameOf<T>();
  return Record<T> ? "record" : "value";
}

template <typename T>
inline constexpr bool isOptional = false;
template <typename T>
inline constexpr bool isOptional<std::optional<T>> = true;

}  // namespace toml
