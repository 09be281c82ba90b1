#include "TOMLDecoder/internal/TOMLDocument.h"

#include <cstring>
#include <stdexcept>

#include "TOMLDecoder/internal/KeyHash.h"

namespace toml {

namespace {

/// The index of the pair that has the key; `PairRing::none` if there is no such pair.
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

Content TOMLDocument::contentOf(Entry pair) const {
  switch (pair.kind) {
    case Entry::Kind::value: {
      const TextRange value = keyValues[pair.index].value;
      return {pair, value, value.offset};
    }
    case Entry::Kind::array:
      return {{Entry::Kind::array, keyArrays[pair.index].array}, {}, placeOf(pair)};
    case Entry::Kind::table:
      return {{Entry::Kind::table, keyTables[pair.index].table}, {}, placeOf(pair)};
    case Entry::Kind::none:
      break;
  }
  return {};
}

Content TOMLDocument::contentOf(ArrayElement element) const {
  if (element.kind() == Entry::Kind::value) return {{element.kind(), 0}, element.text(), element.place()};
  return {{element.kind(), element.index()}, {}, element.place()};
}

TextRange TOMLDocument::keyOf(Entry pair) const {
  if (pair.kind == Entry::Kind::value) return keyValues[pair.index].key;
  if (pair.kind == Entry::Kind::table) return keyTables[pair.index].key;
  return keyArrays[pair.index].key;
}

std::uint32_t TOMLDocument::placeOf(Entry pair) const {
  const TextRange key = keyOf(pair);
  if (key.offset < source.size()) return key.offset;
  std::uint32_t place;
  std::memcpy(&place, keyTexts.data() + (key.offset - source.size() - sizeof place), sizeof place);
  return place;
}

/// The first pair of a kind or, if there is none, of the kinds after it.
Entry TOMLDocument::firstPair(const InternalTOMLTable& table, Entry::Kind kind) const {
  if (kind == Entry::Kind::value) {
    const std::uint32_t last = table.keyValues.last;
    return last == PairRing::none ? firstPair(table, Entry::Kind::array) : Entry(kind, keyValues[last].next);
  }
  if (kind == Entry::Kind::array) {
    const std::uint32_t last = table.arrays.last;
    return last == PairRing::none ? firstPair(table, Entry::Kind::table) : Entry(kind, keyArrays[last].next);
  }
  const std::uint32_t last = table.tables.last;
  return last == PairRing::none ? Entry() : Entry(kind, keyTables[last].next);
}

Entry TOMLDocument::pairAfter(std::uint32_t table, Entry pair) const {
  const InternalTOMLTable& owner = tables[table];
  if (pair.kind == Entry::Kind::value) {
    if (pair.index == owner.keyValues.last) return firstPair(owner, Entry::Kind::array);
    return {pair.kind, keyValues[pair.index].next};
  }
  if (pair.kind == Entry::Kind::array) {
    if (pair.index == owner.arrays.last) return firstPair(owner, Entry::Kind::table);
    return {pair.kind, keyArrays[pair.index].next};
  }
  return pair.index == owner.tables.last ? Entry() : Entry(pair.kind, keyTables[pair.index].next);
}

std::vector<std::string> TOMLDocument::keysOf(std::uint32_t table) const {
  std::vector<std::string> found;
  for (Entry pair = firstPair(table); pair; pair = pairAfter(table, pair)) {
    found.emplace_back(keyText(keyOf(pair)));
  }
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
