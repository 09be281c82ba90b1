#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "TOMLDecoder/Parser.h"
#include "TOMLDecoder/TOMLDocument.h"
#include "TOMLDecoder/ValueUnpacking.h"

namespace toml {

class TOMLArray;

/// Reads values of a table by key, without a record to decode. Copies share the document.
class TOMLTable {
 public:
  /// Parses a document and gives its root. Throws TOMLError as `Parser::parse` does.
  explicit TOMLTable(std::string text, const KeyTransform& keyTransform = {});
  /// `tableIndex` counts the document's keyed tables, or all its tables.
  TOMLTable(std::shared_ptr<const TOMLDocument> document, std::uint32_t tableIndex, bool hasKey)
      : source(std::move(document)), index(tableIndex), isKeyed(hasKey) {}

  /// In the order of the source: first the keys of values, then those of arrays, then those of tables.
  std::vector<std::string> keys() const;
  bool contains(std::string_view key) const;
  /// What the key holds: a value, an array, a table, or none.
  Entry::Kind kindOf(std::string_view key) const;
  /// How a value is written. Throws TOMLError: `keyNotFoundInTable`, `typeMismatchInTable` for an array or a
  /// table, `invalidValueInTable` for a value of no kind.
  ValueKind valueKindOf(std::string_view key) const;

  /// A std::string, std::int64_t, double, bool or one of the date and time records. Throws TOMLError:
  /// `keyNotFoundInTable`, `typeMismatchInTable` for an array or a table, and what the unpacking finds wrong.
  template <ReadableValue T>
  T value(std::string_view key) const {
    return unpackValue<T>(*source, valueAt(key, typeName<T>));
  }

  /// Throw TOMLError: `keyNotFoundInTable`, `typeMismatchInTable`.
  TOMLTable table(std::string_view key) const;
  TOMLArray array(std::string_view key) const;

  /// The index of this table among all tables of the document.
  std::uint32_t tableIndex() const { return isKeyed ? source->keyTables[index].table : index; }

  std::shared_ptr<const TOMLDocument> source;
  std::uint32_t index;
  bool isKeyed;

 private:
  Entry find(std::string_view key, Entry::Kind wanted, const char* expected) const;
  TextRange valueAt(std::string_view key, const char* expected) const;
};

}  // namespace toml
