#pragma once

#include <cstdint>

#include "TOMLDecoder/Values.h"

// What the lists of a TOMLDocument consist of. Entries refer to each other by index, never by pointer.
namespace toml {

/// A range of bytes of a document.
struct TextRange {
  std::uint32_t offset = 0;
  std::uint32_t length = 0;
};

/// Names what stands under a key or in a place of an array, by its index in one of the lists of a document.
struct Entry {
  using Kind = ItemKind;

  Entry() : kind(Kind::none), index(0) {}
  Entry(Kind which, std::uint32_t where) : kind(which), index(where & 0x3FFFFFFF) {}

  explicit operator bool() const { return kind != Kind::none; }

  Kind kind : 2;
  std::uint32_t index : 30;
};

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

/// What stands under a key or in a place of an array, found: the token of a value, or the index of an array
/// or a table of the document.
struct Content {
  Entry entry;
  TextRange token{};        ///< of a value
  std::uint32_t place = 0;  ///< in the source
};

/// The elements stand side by side in the document's list of elements.
struct InternalTOMLArray {
  using Kind = ArrayKind;

  std::uint32_t first = 0;
  std::uint32_t count = 0;
  std::uint32_t capacity = 0;
  Kind kind = Kind::none;
  bool readOnly = false;  ///< written in brackets, and closed
};

// A pair binds a key to its content. The pairs of one table form a ring: `next` is an index into the same
// list, and the table knows the last one. `keyHash` is the kept half of the hash. A key lies in the source
// or, where it isn't written there as it reads, in the key texts, whose offsets begin where those of the
// source end.

struct KeyValuePair {
  TextRange key;
  std::uint32_t keyHash;
  std::uint32_t next;
  TextRange value;
};

struct KeyTablePair {
  TextRange key;
  std::uint32_t keyHash;
  std::uint32_t next;
  std::uint32_t table;
};

struct KeyArrayPair {
  TextRange key;
  std::uint32_t keyHash;
  std::uint32_t next;
  std::uint32_t array;
};

/// The pairs of one kind that belong to a table: the index of the last one of the ring.
struct PairRing {
  static constexpr std::uint32_t none = 0xFFFFFFFF;

  std::uint32_t last = none;
};

struct InternalTOMLTable {
  /// A table with more keys is looked up in an index of its own: with so many keys the filter lets nearly
  /// every miss pass, and if they begin alike it does so from the second key on.
  static constexpr std::uint32_t mostUnindexedKeys = 24;

  std::uint64_t keyHashBloom = 0;
  PairRing keyValues{};
  PairRing arrays{};
  PairRing tables{};
  std::uint32_t implicit : 1 = 0;  ///< made on the way to a table that a header names
  std::uint32_t readOnly : 1 = 0;  ///< an inline table that has been closed
  std::uint32_t definedByDottedKey : 1 = 0;
  std::uint32_t indexed : 1 = 0;
  std::uint32_t keyCountOrIndex : 28 = 0;  ///< how many keys; if indexed, which index of the document
};

}  // namespace toml
