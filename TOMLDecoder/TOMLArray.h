#pragma once

#include <cstdint>
#include <memory>

#include "TOMLDecoder/TOMLDocument.h"
#include "TOMLDecoder/TOMLTable.h"
#include "TOMLDecoder/ValueUnpacking.h"

namespace toml {

/// Reads elements of an array by index, without a record to decode. Copies share the document.
class TOMLArray {
 public:
  /// `arrayIndex` counts the document's keyed arrays, or all its arrays.
  TOMLArray(std::shared_ptr<const TOMLDocument> document, std::uint32_t arrayIndex, bool hasKey)
      : source(std::move(document)), index(arrayIndex), isKeyed(hasKey) {}

  std::size_t size() const { return internal().count; }
  InternalTOMLArray::Kind kind() const { return internal().kind; }
  /// Throws TOMLError `arrayOutOfBound`, as all that take a place do.
  Entry::Kind kindOf(std::size_t place) const { return elementAt(place).kind(); }
  ValueKind valueKindOf(std::size_t place) const;

  /// The types and errors of `TOMLTable::value`, with `typeMismatchInArray`.
  template <ReadableValue T>
  T value(std::size_t place) const {
    return unpackValue<T>(*source, element(place, Entry::Kind::value, typeName<T>).text());
  }

  /// Throw TOMLError `typeMismatchInArray`.
  TOMLTable table(std::size_t place) const;
  TOMLArray array(std::size_t place) const;

  /// The index of this array among all arrays of the document.
  std::uint32_t arrayIndex() const { return isKeyed ? source->keyArrays[index].array : index; }

  std::shared_ptr<const TOMLDocument> source;
  std::uint32_t index;
  bool isKeyed;

 private:
  const InternalTOMLArray& internal() const { return source->arrays[arrayIndex()]; }
  ArrayElement elementAt(std::size_t place) const;
  ArrayElement element(std::size_t place, Entry::Kind wanted, const char* expected) const;
};

}  // namespace toml
