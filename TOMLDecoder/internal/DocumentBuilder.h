#pragma once

#include <cstdint>

#include "TOMLDecoder/internal/TOMLDocument.h"

namespace toml {

/// A key as it is stored, with what a lookup needs. `place` is where it stands in the source.
struct HashedKey {
  TextRange text;
  std::uint64_t hash = 0;
  std::uint32_t place = 0;
};

/// Adds entries to a document. The key of a table or an array that is added isn't in the table yet.
class DocumentBuilder {
 public:
  explicit DocumentBuilder(TOMLDocument& document) : document_(document) {}

  Entry find(std::uint32_t table, const HashedKey& key) const {
    return document_.find(table, key.text, key.hash);
  }
  /// False, and nothing added, if the table has the key.
  bool addValue(std::uint32_t table, const HashedKey& key, TextRange value);
  /// The index of the new table.
  std::uint32_t addTable(std::uint32_t table, const HashedKey& key, const InternalTOMLTable& added);
  /// The index of the new, empty array.
  std::uint32_t addArray(std::uint32_t table, const HashedKey& key);
  /// Appends to an array that headers make; others may have grown since its last element was added.
  void addElement(std::uint32_t array, ArrayElement element);
  /// Gives an array all its elements at once and closes it.
  void closeArray(std::uint32_t array, const ArrayElement* elements, std::uint32_t count);

 private:
  template <typename Pair>
  void add(std::uint32_t table, FlatList<Pair>& pairs, PairRing InternalTOMLTable::*ring, Entry::Kind kind,
           const HashedKey& key, Pair pair);
  void addToIndex(InternalTOMLTable& table, Entry entry, TextRange key);
  KeyIndex indexOf(const InternalTOMLTable& table, std::uint32_t size) const;

  TOMLDocument& document_;
};

}  // namespace toml
