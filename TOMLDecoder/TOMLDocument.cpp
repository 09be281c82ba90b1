#include "TOMLDecoder/TOMLDocument.h"

#include <cstring>
#include <stdexcept>

#include "TOMLDecoder/IndexHash.h"

namespace toml {

namespace {

/// `ring.last` of an empty ring is none, and so is the answer then.
template <typename Pair>
std::uint32_t search(const TOMLDocument& document, const FlatList<Pair>& pairs, PairRing ring,
                     std::string_view key, std::uint32_t hash) {
  if (ring.last == PairRing::none) return PairRing::none;
  std::uint32_t index = ring.last;
  do {
    index = pairs[index].next;
    const Pair& pair = pairs[index];
    if (pair.keyHash == hash && document.keyText(pair.key) == key) return index;
  } while (index != ring.last);
  return PairRing::none;
}

}  // namespace

Entry TOMLDocument::find(std::uint32_t table, std::string_view key) const {
  const std::uint64_t hash = fastKeyHash(key);
  return mayHave(table, hash) ? findPassed(tables[table], key, hash) : Entry();
}

/// The filter has let the key through.
Entry TOMLDocument::findPassed(const InternalTOMLTable& table, std::string_view key,
                               std::uint64_t hash) const {
  if (!table.indexed) return findInRings(table, key, keptHash(hash));
  return indexes[table.keyCountOrIndex].find(indexHash(key),
                                             [&](Entry entry) { return keyText(keyOf(entry)) == key; });
}

Entry TOMLDocument::findInRings(const InternalTOMLTable& table, std::string_view key,
                                std::uint32_t hash) const {
  if (const auto index = search(*this, keyValues, table.keyValues, key, hash); index != PairRing::none) {
    return {Entry::Kind::value, index};
  }
  if (const auto index = search(*this, keyTables, table.tables, key, hash); index != PairRing::none) {
    return {Entry::Kind::table, index};
  }
  if (const auto index = search(*this, keyArrays, table.arrays, key, hash); index != PairRing::none) {
    return {Entry::Kind::array, index};
  }
  return {};
}

TextRange TOMLDocument::keyOf(Entry entry) const {
  if (entry.kind == Entry::Kind::value) return keyValues[entry.index].key;
  if (entry.kind == Entry::Kind::table) return keyTables[entry.index].key;
  return keyArrays[entry.index].key;
}

std::uint32_t TOMLDocument::placeOf(Entry entry) const {
  const TextRange key = keyOf(entry);
  if (key.offset < source.size()) return key.offset;
  std::uint32_t place;
  std::memcpy(&place, keyTexts.data() + (key.offset - source.size() - sizeof place), sizeof place);
  return place;
}

std::vector<std::string> TOMLDocument::keysOf(std::uint32_t table) const {
  std::vector<std::string> found;
  const auto addAll = [&](const auto& pairs, PairRing ring) {
    forEachPair(pairs, ring, [&](std::uint32_t pair) { found.emplace_back(keyText(pairs[pair].key)); });
  };
  addAll(keyValues, tables[table].keyValues);
  addAll(keyArrays, tables[table].arrays);
  addAll(keyTables, tables[table].tables);
  return found;
}

TextRange TOMLDocument::keepKeyText(std::string_view text, std::uint32_t place) {
  char placeBytes[sizeof place];
  std::memcpy(placeBytes, &place, sizeof place);
  keyTexts.append(placeBytes, sizeof place);
  const std::size_t offset = source.size() + keyTexts.size();
  if (text.size() > 0xFFFFFFFF - offset) throw std::length_error("the keys are too long");
  keyTexts += text;
  return {static_cast<std::uint32_t>(offset), static_cast<std::uint32_t>(text.size())};
}

void TOMLDocument::trim() {
  tables.trim();
  arrays.trim();
  keyTables.trim();
  keyArrays.trim();
  keyValues.trim();
  elements.trim();
}

}  // namespace toml
