#include "TOMLDecoder/TOMLTable.h"

#include "TOMLDecoder/TOMLArray.h"
#include "TOMLDecoder/internal/Parser.h"

namespace toml {

TOMLTable::TOMLTable(std::string text, const KeyTransform& keyTransform)
    : source(std::make_shared<const TOMLDocument>(Parser::parse(std::move(text), keyTransform))),
      index(0),
      isKeyed(false) {}

std::vector<std::string> TOMLTable::keys() const {
  return source->keysOf(tableIndex());
}

bool TOMLTable::contains(std::string_view key) const {
  return kindOf(key) != ItemKind::none;
}

ItemKind TOMLTable::kindOf(std::string_view key) const {
  return source->find(tableIndex(), key).kind;
}

ValueKind TOMLTable::valueKindOf(std::string_view key) const {
  const TextRange token = valueAt(key, "value");
  const ValueKind kind = toml::valueKindOf(source->text(token));
  if (kind == ValueKind::invalid) DirectReading::failAsInvalid(*source, self(), std::string(key), token);
  return kind;
}

TOMLTable TOMLTable::table(std::string_view key) const {
  return {source, pairOf(key, Entry::Kind::table, "table").index, true};
}

TOMLArray TOMLTable::array(std::string_view key) const {
  return {source, pairOf(key, Entry::Kind::array, "array").index, true};
}

std::optional<TOMLItem> TOMLTable::find(std::string_view key) const {
  const Entry pair = source->find(tableIndex(), key);
  if (!pair) return std::nullopt;
  return TOMLItem(source, self(), std::string(key), source->contentOf(pair));
}

std::optional<TOMLTable> TOMLTable::tableIfPresent(std::string_view key) const {
  if (!contains(key)) return std::nullopt;
  return table(key);
}

std::optional<TOMLArray> TOMLTable::arrayIfPresent(std::string_view key) const {
  if (!contains(key)) return std::nullopt;
  return array(key);
}

TOMLTable::Iterator TOMLTable::begin() const {
  return {source, tableIndex(), source->firstPair(tableIndex())};
}

TOMLTable::Iterator TOMLTable::end() const {
  return {source, tableIndex(), {}};
}

TOMLTable::Iterator::value_type TOMLTable::Iterator::operator*() const {
  const std::string_view key = source_->keyText(source_->keyOf(pair_));
  return {key, TOMLItem(source_, {Entry::Kind::table, table_}, std::string(key), source_->contentOf(pair_))};
}

void TOMLTable::fail(std::string_view key, std::string message) const {
  if (const auto item = find(key)) item->fail(std::move(message));
  throw DirectReading::located(
      *source, self(), std::string(key),
      TOMLError({.kind = TOMLError::Reason::Kind::typeMismatch, .message = std::move(message)}));
}

Entry TOMLTable::pairOf(std::string_view key, Entry::Kind wanted, const char* expected) const {
  const Entry pair = source->find(tableIndex(), key);
  if (!pair) DirectReading::failAsMissing(*source, self(), key, expected);
  if (pair.kind != wanted) {
    DirectReading::failAsType(*source, self(), std::string(key), source->contentOf(pair), expected);
  }
  return pair;
}

TextRange TOMLTable::valueAt(std::string_view key, const char* expected) const {
  return source->keyValues[pairOf(key, Entry::Kind::value, expected).index].value;
}

}  // namespace toml
