#include "TOMLDecoder/UnkeyedDecodingContainer.h"

namespace toml {

std::size_t UnkeyedDecodingContainer::count() const {
  return decoding_.document().arrays[decoding_.content_.entry.index].count;
}

KeyedDecodingContainer UnkeyedDecodingContainer::nestedContainer() {
  const Content found = content("Unkeyed container is at end.");
  if (found.entry.kind != Entry::Kind::table) failAt(found, "Element is not a table.");
  return decoding_.child(found, TOMLKey{next_++}).keyed();
}

UnkeyedDecodingContainer UnkeyedDecodingContainer::nestedUnkeyedContainer() {
  const Content found = content("Cannot get nested unkeyed container -- unkeyed container is at end.");
  if (found.entry.kind != Entry::Kind::array) {
    failAt(found, "Cannot get nested unkeyed container -- element is not an array.");
  }
  return decoding_.child(found, TOMLKey{next_++}).unkeyed();
}

Decoding UnkeyedDecodingContainer::superDecoder() {
  const Content found = content("Unkeyed container is at end.");
  return decoding_.child(found, TOMLKey{next_++});
}

Content UnkeyedDecodingContainer::content(const char* messageAtEnd) const {
  const TOMLDocument& document = decoding_.document();
  const InternalTOMLArray& array = document.arrays[decoding_.content_.entry.index];
  if (isAtEnd()) {
    throw TOMLError({.kind = TOMLError::Reason::Kind::arrayOutOfBound,
                     .lineNumber = document.lineNumber(decoding_.content_.place),
                     .message = messageAtEnd,
                     .index = next_,
                     .bound = array.count})
        .at(decoding_.codingPath(TOMLKey{next_}));
  }
  return document.contentOf(document.elements[array.first + static_cast<std::uint32_t>(next_)]);
}

void UnkeyedDecodingContainer::failAt(const Content& content, const char* message) const {
  throw TOMLError({.kind = TOMLError::Reason::Kind::typeMismatch,
                   .lineNumber = decoding_.document().lineNumber(content.place),
                   .message = message,
                   .found = nameOf(decoding_.document(), content)})
      .at(decoding_.codingPath(TOMLKey{next_}));
}

}  // namespace toml
