#pragma once

#include <optional>
#include <vector>

#include "TOMLDecoder/Decodable.h"
#include "TOMLDecoder/Decoding.h"
#include "TOMLDecoder/KeyedDecodingContainer.h"

namespace toml {

/// An array whose elements are decoded one after the other; an element that can't be decoded stays the next
/// one. All that read throw TOMLError with the line and the path: `arrayOutOfBound` at the end, and what is
/// wrong with the element.
class UnkeyedDecodingContainer {
 public:
  std::size_t count() const;
  std::size_t currentIndex() const { return next_; }
  bool isAtEnd() const { return next_ == count(); }

  template <Decodable T>
  T decode();
  /// Empty at the end.
  template <Decodable T>
  std::optional<T> decodeIfPresent();

  KeyedDecodingContainer nestedContainer();
  UnkeyedDecodingContainer nestedUnkeyedContainer();
  /// The part that the record's parent type has: the next element.
  Decoding superDecoder();

  std::vector<TOMLKey> codingPath() const { return decoding_.codingPath(); }

 private:
  friend class Decoding;

  /// `decoding` is at an array.
  explicit UnkeyedDecodingContainer(Decoding decoding) : decoding_(std::move(decoding)) {}

  Content content(const char* messageAtEnd) const;
  [[noreturn]] void failAt(const Content& content, const char* message) const;

  Decoding decoding_;
  std::size_t next_ = 0;
};

template <Decodable T>
T UnkeyedDecodingContainer::decode() {
  if constexpr (isOptional<T>) {
    return decodeIfPresent<typename T::value_type>();
  } else {
    T decoded = decoding_.decodeChild<T>(content("Unkeyed container is at end."), TOMLKey{next_});
    ++next_;
    return decoded;
  }
}

template <Decodable T>
std::optional<T> UnkeyedDecodingContainer::decodeIfPresent() {
  if (isAtEnd()) return std::nullopt;
  return decode<T>();
}

}  // namespace toml
