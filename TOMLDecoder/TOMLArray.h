#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <optional>

#include "TOMLDecoder/TOMLItem.h"
#include "TOMLDecoder/TOMLTable.h"

namespace toml {

/// Reads elements of an array by index, without a record to decode. Copies share the document.
class TOMLArray {
 public:
  class Iterator;

  /// `arrayIndex` counts the document's keyed arrays, or all its arrays.
  TOMLArray(std::shared_ptr<const TOMLDocument> document, std::uint32_t arrayIndex, bool hasKey)
      : source(std::move(document)), index(arrayIndex), isKeyed(hasKey) {}

  std::size_t size() const { return internal().count; }
  bool empty() const { return size() == 0; }
  ArrayKind kind() const { return internal().kind; }
  /// Throws TOMLError `arrayOutOfBound`, as all that take a place do.
  ItemKind kindOf(std::size_t place) const { return elementAt(place).kind(); }
  ValueKind valueKindOf(std::size_t place) const;

  /// The types and errors of `TOMLTable::value`, with `typeMismatchInArray`.
  template <ReadableValue T>
  T value(std::size_t place) const {
    const TextRange token = element(place, Entry::Kind::value, typeName<T>).text();
    try {
      return unpackValue<T>(*source, token);
    } catch (const TOMLError& error) {
      throw DirectReading::located(*source, self(), place, error);
    }
  }
  /// Throw TOMLError `typeMismatchInArray`.
  TOMLTable table(std::size_t place) const;
  TOMLArray array(std::size_t place) const;

  // For places that may lie beyond the end. What is there and has another type is an error here as well.

  template <ReadableValue T>
  std::optional<T> valueIfPresent(std::size_t place) const {
    if (place >= size()) return std::nullopt;
    return value<T>(place);
  }
  template <ReadableValue T>
  T valueOr(std::size_t place, std::type_identity_t<T> fallback) const {
    return place < size() ? value<T>(place) : std::move(fallback);
  }

  /// Every element from the first to the last, as a TOMLItem.
  ///
  ///     for (const toml::TOMLItem& port : ports) …
  Iterator begin() const;
  Iterator end() const;

  /// The index of this array among all arrays of the document.
  std::uint32_t arrayIndex() const { return isKeyed ? source->keyArrays[index].array : index; }

  std::shared_ptr<const TOMLDocument> source;
  std::uint32_t index;
  bool isKeyed;

 private:
  Entry self() const { return {Entry::Kind::array, arrayIndex()}; }
  const InternalTOMLArray& internal() const { return source->arrays[arrayIndex()]; }
  ArrayElement elementAt(std::size_t place) const;
  ArrayElement element(std::size_t place, Entry::Kind wanted, const char* expected) const;
};

class TOMLArray::Iterator {
 public:
  using value_type = TOMLItem;
  using difference_type = std::ptrdiff_t;
  using iterator_concept = std::input_iterator_tag;

  Iterator() = default;

  TOMLItem operator*() const;
  Iterator& operator++() {
    ++place_;
    return *this;
  }
  void operator++(int) { ++*this; }
  bool operator==(const Iterator& other) const { return place_ == other.place_; }

 private:
  friend class TOMLArray;

  Iterator(std::shared_ptr<const TOMLDocument> source, std::uint32_t array, std::uint32_t place)
      : source_(std::move(source)), array_(array), place_(place) {}

  std::shared_ptr<const TOMLDocument> source_;
  std::uint32_t array_ = 0;
  std::uint32_t place_ = 0;
};

}  // namespace toml
