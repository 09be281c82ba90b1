#include "TOMLDecoder/Decoding.h"

#include <algorithm>

#include "TOMLDecoder/KeyedDecodingContainer.h"
#include "TOMLDecoder/UnkeyedDecodingContainer.h"

namespace toml {

Decoding::Decoding(std::shared_ptr<const DecodingState> state)
    : state_(std::move(state)), content_{{Entry::Kind::table, 0}, {}, 0} {}

KeyedDecodingContainer Decoding::keyed() const {
  if (content_.entry.kind != Entry::Kind::table) failAsFound("Cannot get keyed decoding container -- found ");
  return KeyedDecodingContainer(*this);
}

UnkeyedDecodingContainer Decoding::unkeyed() const {
  if (content_.entry.kind != Entry::Kind::array)
    failAsFound("Cannot get unkeyed decoding container -- found ");
  return UnkeyedDecodingContainer(*this);
}

std::vector<TOMLKey> Decoding::codingPath() const {
  std::vector<TOMLKey> path;
  for (const PathStep* step = path_.get(); step; step = step->parent.get()) path.push_back(step->key);
  std::reverse(path.begin(), path.end());
  return path;
}

std::vector<TOMLKey> Decoding::codingPath(const TOMLKey& last) const {
  std::vector<TOMLKey> path = codingPath();
  path.push_back(last);
  return path;
}

Decoding Decoding::child(const Content& content, const TOMLKey& key) const {
  const std::size_t depth = path_ ? path_->depth + 1 : 1;
  if (depth > mostDepth) fail("Nested deeper than " + std::to_string(mostDepth) + " levels.");
  Decoding inner = *this;
  inner.content_ = content;
  inner.path_ = std::make_shared<const PathStep>(PathStep{path_, key, depth});
  return inner;
}

TOMLError Decoding::located(const TOMLError& error) const {
  // Every level that an error passes on its way out comes here; the innermost one knew best.
  if (error.lineNumber != 0 && !error.codingPath.empty()) return error;
  return error.within(lineNumber()).at(codingPath());
}

void Decoding::fail(std::string message) const {
  throw TOMLError({.kind = TOMLError::Reason::Kind::typeMismatch,
                   .lineNumber = lineNumber(),
                   .message = std::move(message)})
      .at(codingPath());
}

void Decoding::failAsFound(const char* message) const {
  const std::string found = nameOf(document(), content_);
  throw TOMLError({.kind = TOMLError::Reason::Kind::typeMismatch,
                   .lineNumber = lineNumber(),
                   .message = message + found,
                   .found = found})
      .at(codingPath());
}

}  // namespace toml
