#include "TOMLDecoder/internal/DirectReading.h"

#include <algorithm>
#include <vector>

namespace toml::DirectReading {

namespace {

using Kind = TOMLError::Reason::Kind;

/// The table or the array that something stands in, and where: a pair of the table, or a place in the array.
struct Owner {
  Entry container;
  Entry pair;
  std::uint32_t place = 0;
};

/// Who owns each table and each array of a document.
class Owners {
 public:
  explicit Owners(const TOMLDocument& document)
      : document_(document), ofTables_(document.tables.size()), ofArrays_(document.arrays.size()) {
    for (std::uint32_t table = 0; table < document.tables.size(); ++table) addPairs(table);
    for (std::uint32_t array = 0; array < document.arrays.size(); ++array) addElements(array);
  }

  /// Nothing owns the root: its owner has no container.
  const Owner& of(Entry content) const {
    return content.kind == Entry::Kind::table ? ofTables_[content.index] : ofArrays_[content.index];
  }

 private:
  void add(Entry content, Owner owner) {
    if (content.kind == Entry::Kind::table) ofTables_[content.index] = owner;
    if (content.kind == Entry::Kind::array) ofArrays_[content.index] = owner;
  }

  void addPairs(std::uint32_t table) {
    for (Entry pair = document_.firstPair(table); pair; pair = document_.pairAfter(table, pair)) {
      add(document_.contentOf(pair).entry, {{Entry::Kind::table, table}, pair});
    }
  }

  void addElements(std::uint32_t array) {
    const InternalTOMLArray& owner = document_.arrays[array];
    for (std::uint32_t place = 0; place < owner.count; ++place) {
      const ArrayElement element = document_.elements[owner.first + place];
      add(document_.contentOf(element).entry, {{Entry::Kind::array, array}, {}, place});
    }
  }

  const TOMLDocument& document_;
  std::vector<Owner> ofTables_;
  std::vector<Owner> ofArrays_;
};

/// Where a container is written in the source.
std::uint32_t placeOf(const TOMLDocument& document, const Owner& owner) {
  if (owner.pair) return document.placeOf(owner.pair);
  if (!owner.container) return 0;
  return document.elements[document.arrays[owner.container.index].first + owner.place].place();
}

TOMLKey keyOf(const TOMLDocument& document, const Owner& owner) {
  if (!owner.pair) return std::size_t{owner.place};
  return std::string(document.keyText(document.keyOf(owner.pair)));
}

}  // namespace

TOMLError located(const TOMLDocument& document, Entry container, const TOMLKey& key, const TOMLError& error) {
  const Owners owners(document);
  std::vector<TOMLKey> path = {key};
  for (Owner owner = owners.of(container); owner.container; owner = owners.of(owner.container)) {
    path.push_back(keyOf(document, owner));
  }
  std::reverse(path.begin(), path.end());
  return error.within(document.lineNumber(placeOf(document, owners.of(container)))).at(std::move(path));
}

void failAsMissing(const TOMLDocument& document, Entry table, std::string_view key, const char* expected) {
  const TOMLError error({.kind = Kind::keyNotFoundInTable, .key = std::string(key), .expected = expected});
  throw located(document, table, std::string(key), error);
}

void failBeyondEnd(const TOMLDocument& document, Entry array, std::size_t place) {
  const std::uint32_t count = document.arrays[array.index].count;
  throw located(document, array, place,
                TOMLError({.kind = Kind::arrayOutOfBound, .index = place, .bound = count}));
}

void failAsType(const TOMLDocument& document, Entry container, const TOMLKey& key, const Content& content,
                const char* expected) {
  const TOMLError error(mismatchAt(key, expected, nameOf(document, content)));
  throw located(document, container, key, error.at(document.lineNumber(content.place)));
}

void failAsInvalid(const TOMLDocument& document, Entry container, const TOMLKey& key, TextRange token) {
  throw located(document, container, key,
                TOMLError({.kind = Kind::invalidValueInTable,
                           .lineNumber = document.lineNumber(token.offset),
                           .found = std::string(document.text(token)),
                           .key = key.text()}));
}

}  // namespace toml::DirectReading
