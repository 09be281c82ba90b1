#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "TOMLDecoder/Strategy.h"
#include "TOMLDecoder/TOMLItem.h"

namespace toml {

class TOMLArray;

/// Reads values of a table by key, without a record to decode. Copies share the document.
///
/// What is read is looked at only then: a document with a wrong date parses, and the date fails when it is
/// read. Errors have the line and the path. To find the path, an error goes through the whole document; where
/// a key may well be missing, ask for it with `find`, `valueIfPresent` or `valueOr`.
class TOMLTable {
 public:
  class Iterator;

  /// Parses a document and gives its root. Throws TOMLError `invalidUTF8`, `syntax`, `badKey`, `keyExists` or
  /// `invalidCharacter`, and what is wrong with a quoted key; each with its line.
  explicit TOMLTable(std::string text, const KeyTransform& keyTransform = {});
  /// `tableIndex` counts the document's keyed tables, or all its tables.
  TOMLTable(std::shared_ptr<const TOMLDocument> document, std::uint32_t tableIndex, bool hasKey)
      : source(std::move(document)), index(tableIndex), isKeyed(hasKey) {}

  /// First the keys of values, then those of arrays, then those of tables, each in the order of the source.
  std::vector<std::string> keys() const;
  bool contains(std::string_view key) const;
  ItemKind kindOf(std::string_view key) const;
  /// How a value is written. Throws TOMLError: `keyNotFoundInTable`, `typeMismatchInTable` for an array or a
  /// table, `invalidValueInTable` for a value of no kind.
  ValueKind valueKindOf(std::string_view key) const;

  /// A std::string, std::int64_t, double, bool or one of the date and time records. Throws TOMLError:
  /// `keyNotFoundInTable`, `typeMismatchInTable` for an array or a table, and what is wrong with the value.
  template <ReadableValue T>
  T value(std::string_view key) const {
    const TextRange token = valueAt(key, typeName<T>);
    try {
      return unpackValue<T>(*source, token);
    } catch (const TOMLError& error) {
      throw DirectReading::located(*source, self(), std::string(key), error);
    }
  }
  /// Throw TOMLError: `keyNotFoundInTable`, `typeMismatchInTable`.
  TOMLTable table(std::string_view key) const;
  TOMLArray array(std::string_view key) const;

  // For keys that may be missing. What is there and has another type is an error here as well.

  std::optional<TOMLItem> find(std::string_view key) const;
  template <ReadableValue T>
  std::optional<T> valueIfPresent(std::string_view key) const {
    if (!contains(key)) return std::nullopt;
    return value<T>(key);
  }
  /// The type is always named: `valueOr<std::int64_t>("port", 8080)`.
  template <ReadableValue T>
  T valueOr(std::string_view key, std::type_identity_t<T> fallback) const {
    return contains(key) ? value<T>(key) : std::move(fallback);
  }
  std::optional<TOMLTable> tableIfPresent(std::string_view key) const;
  std::optional<TOMLArray> arrayIfPresent(std::string_view key) const;

  /// Every key with what stands under it, in the order of `keys`. A key lives as long as the document does.
  ///
  ///     for (const auto& [key, item] : table) …
  Iterator begin() const;
  Iterator end() const;

  /// For checks of one's own: throws TOMLError `typeMismatch` with the message, and with the line and the
  /// path of what stands under the key. For a missing key it is the line of the table.
  [[noreturn]] void fail(std::string_view key, std::string message) const;

  /// The index of this table among all tables of the document.
  std::uint32_t tableIndex() const { return isKeyed ? source->keyTables[index].table : index; }

  std::shared_ptr<const TOMLDocument> source;
  std::uint32_t index;
  bool isKeyed;

 private:
  Entry self() const { return {Entry::Kind::table, tableIndex()}; }
  Entry pairOf(std::string_view key, Entry::Kind wanted, const char* expected) const;
  TextRange valueAt(std::string_view key, const char* expected) const;
};

class TOMLTable::Iterator {
 public:
  using value_type = std::pair<std::string_view, TOMLItem>;
  using difference_type = std::ptrdiff_t;
  using iterator_concept = std::input_iterator_tag;

  Iterator() = default;

  value_type operator*() const;
  Iterator& operator++() {
    pair_ = source_->pairAfter(table_, pair_);
    return *this;
  }
  void operator++(int) { ++*this; }
  bool operator==(const Iterator& other) const {
    return pair_.kind == other.pair_.kind && pair_.index == other.pair_.index;
  }

 private:
  friend class TOMLTable;

  Iterator(std::shared_ptr<const TOMLDocument> source, std::uint32_t table, Entry pair)
      : source_(std::move(source)), table_(table), pair_(pair) {}

  std::shared_ptr<const TOMLDocument> source_;
  std::uint32_t table_ = 0;
  Entry pair_;
};

}  // namespace toml
