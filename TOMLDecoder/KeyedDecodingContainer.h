#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "TOMLDecoder/Decodable.h"
#include "TOMLDecoder/Decoding.h"

namespace toml {

class UnkeyedDecodingContainer;

/// A table whose values are decoded by key. All that read throw TOMLError with the line and the path:
/// `keyNotFoundInTable` for a missing key, and what is wrong with the value.
class KeyedDecodingContainer {
 public:
  /// In the order of the source: first the keys of values, then those of arrays, then those of tables.
  std::vector<std::string> allKeys() const;
  bool contains(std::string_view key) const;

  /// A std::optional is empty where the key is missing.
  template <Decodable T>
  T decode(std::string_view key) const;
  template <Decodable T>
  std::optional<T> decodeIfPresent(std::string_view key) const;

  KeyedDecodingContainer nestedContainer(std::string_view key) const;
  UnkeyedDecodingContainer nestedUnkeyedContainer(std::string_view key) const;
  /// The part that the record's parent type has: what stands under "super", or under a key of its own.
  Decoding superDecoder() const;
  Decoding superDecoder(std::string_view key) const;

  /// For checks of one's own: throws TOMLError `typeMismatch` with the message, and with the line and the
  /// path of what stands under the key. For a missing key it is the line of the table.
  [[noreturn]] void fail(std::string_view key, std::string message) const;

  std::vector<TOMLKey> codingPath() const { return decoding_.codingPath(); }

 private:
  friend class Decoding;

  /// `decoding` is at a table.
  explicit KeyedDecodingContainer(Decoding decoding) : decoding_(std::move(decoding)) {}

  std::optional<Content> find(std::string_view key) const;
  Content content(const TOMLKey& key, const char* expected) const;
  Decoding child(const TOMLKey& key, const char* expected) const;

  Decoding decoding_;
};

template <Decodable T>
T KeyedDecodingContainer::decode(std::string_view key) const {
  if constexpr (isOptional<T>) {
    return decodeIfPresent<typename T::value_type>(key);
  } else {
    const TOMLKey step{std::string(key)};
    return decoding_.decodeChild<T>(content(step, decodableName<T>()), step);
  }
}

template <Decodable T>
std::optional<T> KeyedDecodingContainer::decodeIfPresent(std::string_view key) const {
  const auto found = find(key);
  if (!found) return std::nullopt;
  return decoding_.decodeChild<T>(*found, TOMLKey{std::string(key)});
}

}  // namespace toml
