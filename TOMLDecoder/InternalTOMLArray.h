#pragma once

#include <cstdint>

#include "TOMLDecoder/Entry.h"
#include "TOMLDecoder/Token.h"

namespace toml {

/// A place in an array. A leaf is the range of its token; an array or a table is an index, and the place in
/// the source where it was written.
class ArrayElement {
 public:
  static ArrayElement leaf(TextRange text) { return {{Entry::Kind::value, text.offset}, text.length}; }
  static ArrayElement array(std::uint32_t index, std::uint32_t place) {
    return {{Entry::Kind::array, index}, place};
  }
  static ArrayElement table(std::uint32_t index, std::uint32_t place) {
    return {{Entry::Kind::table, index}, place};
  }

  Entry::Kind kind() const { return entry_.kind; }
  TextRange text() const { return {entry_.index, lengthOrPlace_}; }
  std::uint32_t index() const { return entry_.index; }
  std::uint32_t place() const { return kind() == Entry::Kind::value ? entry_.index : lengthOrPlace_; }

 private:
  ArrayElement(Entry entry, std::uint32_t lengthOrPlace) : entry_(entry), lengthOrPlace_(lengthOrPlace) {}

  Entry entry_;
  std::uint32_t lengthOrPlace_;
};

/// The elements stand side by side in the document's list of elements.
struct InternalTOMLArray {
  enum class Kind : std::uint8_t { none, value, array, table, mixed };

  std::uint32_t first = 0;
  std::uint32_t count = 0;
  std::uint32_t capacity = 0;
  Kind kind = Kind::none;  ///< of all elements; none of an empty array
  bool readOnly = false;   ///< written in brackets, and closed
};

}  // namespace toml
