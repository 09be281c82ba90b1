#include "TOMLDecoder/TOMLDocument.h"

#include "TOMLDecoder/KeyHash.h"

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

std::string_view TOMLDocument::keyText(TextRange key) const {
  if (key.offset < source.size()) return text(key);
  return std::string_view(keyTexts).substr(key.offset - source.size(), key.length);
}

Entry TOMLDocument::find(std::uint32_t table, std::string_view key) const {
  return find(table, key, fastKeyHash(key));
}

Entry TOMLDocument::find(std::uint32_t table, std::string_view key, std::uint64_t hash) const {
  const InternalTOMLTable& found = tables[table];
  const std::uint64_t bits = bloomBits(hash);
  if ((found.keyHashBloom & bits) != bits) return {};
  const std::uint32_t kept = keptHash(hash);
  if (!found.indexed) return findInRings(found, key, kept);
  return indexes[found.keyCountOrIndex].find(
      kept, [&](Entry entry) { return keptHashOf(entry) == kept && keyText(keyOf(entry)) == key; });
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

std::uint32_t TOMLDocument::keptHashOf(Entry entry) const {
  if (entry.kind == Entry::Kind::value) return keyValues[entry.index].keyHash;
  if (entry.kind == Entry::Kind::table) return keyTables[entry.index].keyHash;
  return keyArrays[entry.index].keyHash;
}

TextRange TOMLDocument::keyOf(Entry entry) const {
  if (entry.kind == Entry::Kind::value) return keyValues[entry.index].key;
  if (entry.kind == Entry::Kind::table) return keyTables[entry.index].key;
  return keyArrays[entry.index].key;
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
