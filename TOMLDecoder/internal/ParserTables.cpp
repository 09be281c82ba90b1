#include "TOMLDecoder/TOMLError.h"
#include "TOMLDecoder/internal/KeyHash.h"
#include "TOMLDecoder/internal/Parser.h"
#include "TOMLDecoder/internal/Unpacking.h"

namespace toml {

/// A step of a header: the table in which the next key is looked up. What may be defined again, and how,
/// stands in https://toml.io/en/v1.0.0#table and #array-of-tables.
std::uint32_t Parser::walkTable(std::uint32_t table, const HashedKey& key) {
  const Entry entry = builder_.find(table, key);
  std::uint32_t next = 0;
  switch (entry.kind) {
    case Entry::Kind::none:
      return builder_.addTable(table, key, {.implicit = 1});
    case Entry::Kind::value:
      lexer_.fail(key.place, "key-value already exists");
    case Entry::Kind::array:
      next = lastTableOf(document_.keyArrays[entry.index].array, key);
      break;
    case Entry::Kind::table:
      next = document_.keyTables[entry.index].table;
      break;
  }
  if (document_.tables[next].readOnly) lexer_.fail(key.place, "cannot add to inline table");
  return next;
}

std::uint32_t Parser::lastTableOf(std::uint32_t array, const HashedKey& key) const {
  const InternalTOMLArray& walked = document_.arrays[array];
  if (walked.count == 0) lexer_.fail(key.place, "array element is not a table");
  const ArrayElement last = document_.elements[walked.first + walked.count - 1];
  if (last.kind() != Entry::Kind::table) lexer_.fail(key.place, "array element is not a table");
  return last.index();
}

/// A step of a dotted key (https://toml.io/en/v1.0.0#keys). A table that headers have only passed through
/// becomes one that is defined by dotted keys.
std::uint32_t Parser::walkDottedKey(std::uint32_t table, const HashedKey& key) {
  const Entry entry = builder_.find(table, key);
  if (!entry) return builder_.addTable(table, key, {.definedByDottedKey = 1});
  if (entry.kind == Entry::Kind::value) lexer_.fail(key.place, "key-value already exists");
  if (entry.kind == Entry::Kind::array) failKeyExists(key);
  const std::uint32_t next = document_.keyTables[entry.index].table;
  InternalTOMLTable& found = document_.tables[next];
  if (found.readOnly) lexer_.fail(key.place, "cannot add to inline table");
  if (!found.implicit && !found.definedByDottedKey) {
    lexer_.fail(key.place, "cannot add to explicitly defined table using dotted keys");
  }
  found.implicit = 0;
  found.definedByDottedKey = 1;
  return next;
}

/// The table that a header names: a new one, or one that headers have only passed through.
void Parser::selectTable(std::uint32_t parent, const HashedKey& key) {
  const Entry entry = builder_.find(parent, key);
  if (!entry) {
    currentTable_ = builder_.addTable(parent, key, {});
    return;
  }
  if (entry.kind == Entry::Kind::value) lexer_.fail(key.place, "key-value already exists");
  if (entry.kind == Entry::Kind::array) failKeyExists(key);
  currentTable_ = document_.keyTables[entry.index].table;
  InternalTOMLTable& found = document_.tables[currentTable_];
  if (found.readOnly) lexer_.fail(key.place, "cannot add to inline table");
  if (!found.implicit) lexer_.fail(key.place, "cannot insert new entry into existing table");
  found.implicit = 0;
}

void Parser::selectNewElement(std::uint32_t parent, const HashedKey& key) {
  const Entry entry = builder_.find(parent, key);
  if (entry.kind == Entry::Kind::value) lexer_.fail(key.place, "key-value already exists");
  if (entry.kind == Entry::Kind::table) failKeyExists(key);
  const std::uint32_t array = entry ? document_.keyArrays[entry.index].array : builder_.addArray(parent, key);
  if (document_.arrays[array].readOnly) failKeyExists(key);
  currentTable_ = document_.tables.add({});
  builder_.addElement(array, ArrayElement::table(currentTable_, key.place));
}

HashedKey Parser::normalizeKeyAndHash(Token token) {
  const std::uint32_t place = token.text.offset;
  TextRange key = token.text;
  if (token.kind == Token::Kind::string) {
    key = unquotedKey(token);
  } else if (token.kind != Token::Kind::bareKey) {
    lexer_.fail(place, "invalid or missing key");
  } else if (!keyTransform_) {
    return {key, fastKeyHash(document_.text(key)), place};
  }
  if (keyTransform_) key = document_.keepKeyText(keyTransform_(document_.keyText(key)), place);
  return {key, fastKeyHash(document_.keyText(key)), place};
}

TextRange Parser::unquotedKey(Token token) {
  const std::uint32_t place = token.text.offset;
  const std::string_view quoted = document_.text(token.text);
  if (StringUnpacking::isMultiline(quoted)) {
    throw TOMLError({.kind = TOMLError::Reason::Kind::badKey, .lineNumber = document_.lineNumber(place)});
  }
  if (const auto plain = StringUnpacking::plainText(quoted)) return {place + 1, token.text.length - 2};
  try {
    return document_.keepKeyText(StringUnpacking::unpack(quoted), place);
  } catch (const TOMLError& error) {
    throw error.at(document_.lineNumber(place));
  }
}

void Parser::failKeyExists(const HashedKey& key) const {
  throw TOMLError(
      {.kind = TOMLError::Reason::Kind::keyExists, .lineNumber = document_.lineNumber(key.place)});
}

}  // namespace toml
