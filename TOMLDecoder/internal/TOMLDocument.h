#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "TOMLDecoder/internal/DocumentEntries.h"
#include "TOMLDecoder/internal/FlatList.h"
#include "TOMLDecoder/internal/KeyHash.h"
#include "TOMLDecoder/internal/KeyIndex.h"
#include "TOMLDecoder/internal/LineNumbers.h"

namespace toml {

/// A parsed document: flat lists that refer to each other by index, and the text. A value is the range of
/// its bytes and is unpacked when it is read. The first table is the root.
struct TOMLDocument {
  /// Larger documents are refused, so that every range and every index fits.
  static constexpr std::size_t mostBytes = (std::size_t{1} << 30) - 1;

  FlatList<InternalTOMLTable> tables;
  FlatList<InternalTOMLArray> arrays;
  FlatList<KeyTablePair> keyTables;
  FlatList<KeyArrayPair> keyArrays;
  FlatList<KeyValuePair> keyValues;
  std::string source;
  FlatList<ArrayElement> elements;
  std::string keyTexts;  ///< of keys with escapes and of transformed keys, each after its place
  std::vector<KeyIndex> indexes;
  LineNumbers lines;

  std::string_view text(TextRange value) const { return {source.data() + value.offset, value.length}; }
  std::string_view keyText(TextRange key) const {
    if (key.offset < source.size()) return text(key);
    return {keyTexts.data() + (key.offset - source.size()), key.length};
  }
  std::uint32_t lineNumber(std::size_t place) const { return lines.at(source, place); }

  /// The index of a pair in the list that the entry's kind names.
  Entry find(std::uint32_t table, std::string_view key) const;
  Entry find(std::uint32_t table, TextRange key, std::uint64_t hash) const {
    return mayHave(table, hash) ? findPassed(tables[table], keyText(key), hash) : Entry();
  }
  Content contentOf(Entry pair) const;
  Content contentOf(ArrayElement element) const;
  TextRange keyOf(Entry pair) const;
  /// Where a pair begins in the source.
  std::uint32_t placeOf(Entry pair) const;
  /// The pairs of a table one after the other: first the values, then the arrays, then the tables, each in
  /// the order of the source. No entry at the end.
  Entry firstPair(std::uint32_t table) const { return firstPair(tables[table], Entry::Kind::value); }
  Entry pairAfter(std::uint32_t table, Entry pair) const;
  std::vector<std::string> keysOf(std::uint32_t table) const;

  /// Keeps a key that isn't written in the source as it reads, and where it is written. Its range begins
  /// after the end of the source. Throws std::length_error if ranges don't reach that far.
  TextRange keepKeyText(std::string_view text, std::uint32_t place);

  /// Gives back memory that growing has taken ahead.
  void trim();

 private:
  /// Whether the filter of the table lets a key pass.
  bool mayHave(std::uint32_t table, std::uint64_t hash) const {
    const std::uint64_t bits = bloomBits(hash);
    return (tables[table].keyHashBloom & bits) == bits;
  }
  Entry firstPair(const InternalTOMLTable& table, Entry::Kind kind) const;
  Entry findPassed(const InternalTOMLTable& table, std::string_view key, std::uint64_t hash) const;
  Entry findInRings(const InternalTOMLTable& table, std::string_view key, std::uint32_t hash) const;
};

/// Calls `visit` with the index of every pair of a ring, in the order of the source.
template <typename Pair, typename Visit>
void forEachPair(const FlatList<Pair>& pairs, PairRing ring, const Visit& visit) {
  if (ring.last == PairRing::none) return;
  std::uint32_t index = ring.last;
  do {
    index = pairs[index].next;
    visit(index);
  } while (index != ring.last);
}

}  // namespace toml
