#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "TOMLDecoder/internal/DirectReading.h"

namespace toml {

class TOMLArray;
class TOMLTable;

/// What stands under a key or in a place of an array: a value, a table or an array. It is met by looking a
/// key up (`TOMLTable::find`) and by going through a table or an array. Copies share the document.
class TOMLItem {
 public:
  ItemKind kind() const { return content_.entry.kind; }
  bool isValue() const { return kind() == ItemKind::value; }
  bool isTable() const { return kind() == ItemKind::table; }
  bool isArray() const { return kind() == ItemKind::array; }
  /// How a value is written. Throws as `TOMLTable::valueKindOf`.
  ValueKind valueKind() const;

  /// The types and errors of `TOMLTable::value`, or of `TOMLArray::value`.
  template <ReadableValue T>
  T value() const {
    if (!isValue()) failAsType(typeName<T>);
    try {
      return unpackValue<T>(*source_, content_.token);
    } catch (const TOMLError& error) {
      throw DirectReading::located(*source_, container_, key_, error);
    }
  }
  TOMLTable table() const;
  TOMLArray array() const;

  /// For checks of one's own: throws TOMLError `typeMismatch` with the message, and with the line and the
  /// path of this item.
  [[noreturn]] void fail(std::string message) const;

 private:
  friend class TOMLArray;
  friend class TOMLTable;

  TOMLItem(std::shared_ptr<const TOMLDocument> source, Entry container, TOMLKey key, Content content)
      : source_(std::move(source)), container_(container), key_(std::move(key)), content_(content) {}

  [[noreturn]] void failAsType(const char* expected) const;

  std::shared_ptr<const TOMLDocument> source_;
  Entry container_;
  TOMLKey key_;
  Content content_;
};

}  // namespace toml
