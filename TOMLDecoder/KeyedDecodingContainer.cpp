#include "TOMLDecoder/KeyedDecodingContainer.h"

#include "TOMLDecoder/UnkeyedDecodingContainer.h"

namespace toml {

std::vector<std::string> KeyedDecodingContainer::allKeys() const {
  return decoding_.document().keysOf(decoding_.content_.entry.index);
}

bool KeyedDecodingContainer::contains(std::string_view key) const {
  return find(key).has_value();
}

KeyedDecodingContainer KeyedDecodingContainer::nestedContainer(std::string_view key) const {
  return child(std::string(key), "table").keyed();
}

UnkeyedDecodingContainer KeyedDecodingContainer::nestedUnkeyedContainer(std::string_view key) const {
  return child(std::string(key), "array").unkeyed();
}

Decoding KeyedDecodingContainer::superDecoder() const {
  return child(TOMLKey::Super{}, "table");
}

Decoding KeyedDecodingContainer::superDecoder(std::string_view key) const {
  return child(std::string(key), "table");
}

std::optional<DecodingContent> KeyedDecodingContainer::find(std::string_view key) const {
  const TOMLDocument& document = decoding_.document();
  const Entry pair = document.find(decoding_.content_.entry.index, key);
  switch (pair.kind) {
    case Entry::Kind::none:
      return std::nullopt;
    case Entry::Kind::value: {
      const TextRange value = document.keyValues[pair.index].value;
      return DecodingContent{pair, value, value.offset};
    }
    case Entry::Kind::array:
      return DecodingContent{
          {Entry::Kind::array, document.keyArrays[pair.index].array}, {}, document.placeOf(pair)};
    case Entry::Kind::table:
      break;
  }
  return DecodingContent{
      {Entry::Kind::table, document.keyTables[pair.index].table}, {}, document.placeOf(pair)};
}

DecodingContent KeyedDecodingContainer::content(const TOMLKey& key, const char* expected) const {
  const std::string text = key.text();
  if (const auto found = find(text)) return *found;
  throw TOMLError({.kind = TOMLError::Reason::Kind::keyNotFoundInTable,
                   .message = "No value associated with key " + (key.isSuper() ? "for 'super'" : text),
                   .key = text,
                   .expected = expected})
      .at(decoding_.codingPath(key));
}

Decoding KeyedDecodingContainer::child(const TOMLKey& key, const char* expected) const {
  return decoding_.child(content(key, expected), key);
}

}  // namespace toml
