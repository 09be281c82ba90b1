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

std::optional<Content> KeyedDecodingContainer::find(std::string_view key) const {
  const TOMLDocument& document = decoding_.document();
  const Entry pair = document.find(decoding_.content_.entry.index, key);
  if (!pair) return std::nullopt;
  return document.contentOf(pair);
}

void KeyedDecodingContainer::fail(std::string_view key, std::string message) const {
  const auto found = find(key);
  const std::uint32_t place = found ? found->place : decoding_.content_.place;
  throw TOMLError({.kind = TOMLError::Reason::Kind::typeMismatch,
                   .lineNumber = decoding_.document().lineNumber(place),
                   .message = std::move(message)})
      .at(decoding_.codingPath(TOMLKey{std::string(key)}));
}

Content KeyedDecodingContainer::content(const TOMLKey& key, const char* expected) const {
  const std::string text = key.text();
  if (const auto found = find(text)) return *found;
  throw TOMLError({.kind = TOMLError::Reason::Kind::keyNotFoundInTable,
                   .message = "No value associated with key " + (key.isSuper() ? "for 'super'" : text),
                   .key = text,
                   .expected = expected})
      .within(decoding_.lineNumber())
      .at(decoding_.codingPath(key));
}

Decoding KeyedDecodingContainer::child(const TOMLKey& key, const char* expected) const {
  return decoding_.child(content(key, expected), key);
}

}  // namespace toml
