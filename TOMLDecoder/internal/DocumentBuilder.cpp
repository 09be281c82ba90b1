#include "TOMLDecoder/internal/DocumentBuilder.h"

#include <algorithm>
#include <bit>

#include "TOMLDecoder/internal/KeyHash.h"

namespace toml {

namespace {

InternalTOMLArray::Kind kindOf(ArrayElement element) {
  if (element.kind() == Entry::Kind::value) return InternalTOMLArray::Kind::value;
  return element.kind() == Entry::Kind::array ? InternalTOMLArray::Kind::array
                                              : InternalTOMLArray::Kind::table;
}

/// The kind of an array that gets one more element.
InternalTOMLArray::Kind joined(InternalTOMLArray::Kind kind, ArrayElement element) {
  if (kind == InternalTOMLArray::Kind::none || kind == kindOf(element)) return kindOf(element);
  return InternalTOMLArray::Kind::mixed;
}

}  // namespace

bool DocumentBuilder::addValue(std::uint32_t table, const HashedKey& key, TextRange value) {
  if (find(table, key)) return false;
  add(table, document_.keyValues, &InternalTOMLTable::keyValues, Entry::Kind::value, key,
      {key.text, 0, 0, value});
  return true;
}

std::uint32_t DocumentBuilder::addTable(std::uint32_t table, const HashedKey& key,
                                        const InternalTOMLTable& added) {
  const std::uint32_t index = document_.tables.add(added);
  add(table, document_.keyTables, &InternalTOMLTable::tables, Entry::Kind::table, key,
      {key.text, 0, 0, index});
  return index;
}

std::uint32_t DocumentBuilder::addArray(std::uint32_t table, const HashedKey& key) {
  const std::uint32_t index = document_.arrays.add({});
  add(table, document_.keyArrays, &InternalTOMLTable::arrays, Entry::Kind::array, key,
      {key.text, 0, 0, index});
  return index;
}

template <typename Pair>
void DocumentBuilder::add(std::uint32_t table, FlatList<Pair>& pairs, PairRing InternalTOMLTable::*ring,
                          Entry::Kind kind, const HashedKey& key, Pair pair) {
  InternalTOMLTable& owner = document_.tables[table];
  PairRing& ends = owner.*ring;
  const std::uint32_t index = pairs.size();
  pair.keyHash = keptHash(key.hash);
  pair.next = index;
  if (ends.last != PairRing::none) std::swap(pair.next, pairs[ends.last].next);
  pairs.add(pair);
  ends.last = index;
  owner.keyHashBloom |= bloomBits(key.hash);
  if (!owner.indexed && owner.keyCountOrIndex < InternalTOMLTable::mostUnindexedKeys) {
    owner.keyCountOrIndex = (owner.keyCountOrIndex + 1) & 0xFFFFFFF;
  } else {
    addToIndex(owner, {kind, index}, key.text);
  }
}

/// The table's rings have the entry already.
void DocumentBuilder::addToIndex(InternalTOMLTable& table, Entry entry, TextRange key) {
  if (!table.indexed) {
    document_.indexes.push_back(indexOf(table, InternalTOMLTable::mostUnindexedKeys * 2));
    table.indexed = 1;
    table.keyCountOrIndex = static_cast<std::uint32_t>(document_.indexes.size() - 1) & 0xFFFFFFF;
    return;
  }
  KeyIndex& index = document_.indexes[table.keyCountOrIndex];
  if (index.isFull()) {
    index = indexOf(table, index.size() * 2);
  } else {
    index.add(indexHash(document_.keyText(key)), entry);
  }
}

/// Made from the rings, whose order is that of the pairs in memory.
KeyIndex DocumentBuilder::indexOf(const InternalTOMLTable& table, std::uint32_t size) const {
  KeyIndex index(std::bit_ceil(size));
  const auto addAll = [&](const auto& pairs, PairRing ring, Entry::Kind kind) {
    forEachPair(pairs, ring, [&](std::uint32_t pair) {
      index.add(indexHash(document_.keyText(pairs[pair].key)), {kind, pair});
    });
  };
  addAll(document_.keyValues, table.keyValues, Entry::Kind::value);
  addAll(document_.keyTables, table.tables, Entry::Kind::table);
  addAll(document_.keyArrays, table.arrays, Entry::Kind::array);
  return index;
}

void DocumentBuilder::addElement(std::uint32_t array, ArrayElement element) {
  InternalTOMLArray& grown = document_.arrays[array];
  FlatList<ArrayElement>& elements = document_.elements;
  if (grown.count < grown.capacity) {
    elements[grown.first + grown.count] = element;
  } else if (grown.first + grown.count == elements.size()) {
    elements.add(element);
    ++grown.capacity;
  } else {
    const std::uint32_t first = elements.size();
    const std::uint32_t capacity = std::max(grown.count * 2, 1U);
    elements.resize(first + capacity, element);
    for (std::uint32_t index = 0; index < grown.count; ++index) {
      elements[first + index] = elements[grown.first + index];
    }
    grown.first = first;
    grown.capacity = capacity;
  }
  ++grown.count;
  grown.kind = joined(grown.kind, element);
}

void DocumentBuilder::closeArray(std::uint32_t array, const ArrayElement* elements, std::uint32_t count) {
  InternalTOMLArray& closed = document_.arrays[array];
  closed.first = document_.elements.size();
  closed.count = closed.capacity = count;
  closed.readOnly = true;
  for (std::uint32_t index = 0; index < count; ++index) closed.kind = joined(closed.kind, elements[index]);
  document_.elements.append(elements, count);
}

}  // namespace toml
