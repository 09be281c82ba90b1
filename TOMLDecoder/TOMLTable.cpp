#include "TOMLDecoder/TOMLTable.h"

#include "TOMLDecoder/TOMLArray.h"
#include "TOMLDecoder/TOMLError.h"

namespace toml {

TOMLTable::TOMLTable(std::string text, const KeyTransform& keyTransform)
    : source(std::make_shared<const TOMLDocument>(Parser::parse(std::move(text), keyTransform))),
      index(0),
      isKeyed(false) {}

std::vector<std::string> TOMLTable::keys() const {
  return source->keysOf(tableIndex());
}

bool TOMLTable::contains(std::string_view key) const {
  return kindOf(key) != Entry::Kind::none;
}

Entry::Kind TOMLTable::kindOf(std::string_view key) const {
  return source->find(tableIndex(), key).kind;
}

ValueKind TOMLTable::valueKindOf(std::string_view key) const {
  return checkedValueKind(*source, valueAt(key, "value"), key);
}

TOMLTable TOMLTable::table(std::string_view key) const {
  return {source, find(key, Entry::Kind::table, "table").index, true};
}

TOMLArray TOMLTable::array(std::string_view key) const {
  return {source, find(key, Entry::Kind::array, "array").index, true};
}

Entry TOMLTable::find(std::string_view key, Entry::Kind wanted, const char* expected) const {
  using Kind = TOMLError::Reason::Kind;
  const Entry entry = source->find(tableIndex(), key);
  if (!entry)
    throw TOMLError({.kind = Kind::keyNotFoundInTable, .key = std::string(key), .expected = expected});
  if (entry.kind != wanted) {
    throw TOMLError({.kind = Kind::typeMismatchInTable,
                     .lineNumber = source->lineNumber(source->placeOf(entry)),
                     .key = std::string(key),
                     .expected = expected});
  }
  return entry;
}

TextRange TOMLTable::valueAt(std::string_view key, const char* expected) const {
  return source->keyValues[find(key, Entry::Kind::value, expected).index].value;
}

}  // namespace toml
