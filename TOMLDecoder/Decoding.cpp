#include "TOMLDecoder/Decoding.h"

#include <algorithm>

#include "TOMLDecoder/KeyedDecodingContainer.h"
#include "TOMLDecoder/UnkeyedDecodingContainer.h"

namespace toml {

const char* DecodingContent::name() const {
  if (entry.kind == Entry::Kind::table) return "table";
  return entry.kind == Entry::Kind::array ? "array" : "value";
}

Decoding::Decoding(std::shared_ptr<const DecodingState> state)
    : state_(std::move(state)), content_{{Entry::Kind::table, 0}, {}, 0} {}

KeyedDecodingContainer Decoding::keyed() const {
  if (content_.entry.kind != Entry::Kind::table) {
    fail(std::string("Cannot get keyed decoding container -- found ") + content_.name());
  }
  return KeyedDecodingContainer(*this);
}

UnkeyedDecodingContainer Decoding::unkeyed() const {
  if (content_.entry.kind != Entry::Kind::array) {
    fail(std::string("Cannot get unkeyed decoding container -- found ") + content_.name());
  }
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

Decoding Decoding::child(const DecodingContent& content, const TOMLKey& key) const {
  const std::size_t depth = path_ ? path_->depth + 1 : 1;
  if (depth > mostDepth) fail("Nested deeper than " + std::to_string(mostDepth) + " levels.");
  Decoding inner = *this;
  inner.content_ = content;
  inner.path_ = std::make_shared<const PathStep>(PathStep{path_, key, depth});
  return inner;
}

void Decoding::fail(std::string message) const {
  throw TOMLError({.kind = TOMLError::Reason::Kind::typeMismatch,
                   .lineNumber = document().lineNumber(content_.place),
                   .message = std::move(message)})
      .at(codingPath());
}

}  // namespace toml
