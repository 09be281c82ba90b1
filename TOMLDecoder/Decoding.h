#pragma once

#include <memory>
#include <string>
#include <vector>

#include "TOMLDecoder/DecodingState.h"
#include "TOMLDecoder/TOMLError.h"

namespace toml {

class KeyedDecodingContainer;
class UnkeyedDecodingContainer;

/// A part of a document on its way into a record. Copies share the document and may outlive the decoding.
class Decoding {
 public:
  /// Records that hold records of their own type are decoded down to this depth.
  static constexpr std::size_t mostDepth = 512;

  explicit Decoding(std::shared_ptr<const DecodingState> state);

  /// Throw TOMLError `typeMismatch` if this is something else than a table, or than an array.
  KeyedDecodingContainer keyed() const;
  UnkeyedDecodingContainer unkeyed() const;
  /// The whole of this as another type. A record decodes itself so if it is no table and no array.
  /// Throws TOMLError with the coding path: whatever is wrong in the document or missing.
  template <typename T>
  T decode() const;

  std::vector<TOMLKey> codingPath() const;
  const Strategy& strategy() const { return state_->strategy; }
  bool isLenient() const { return state_->isLenient; }
  const UserInfo& userInfo() const { return state_->userInfo; }

 private:
  friend class KeyedDecodingContainer;
  friend class UnkeyedDecodingContainer;

  /// Throws TOMLError `typeMismatch` beyond the depth.
  Decoding child(const DecodingContent& content, const TOMLKey& key) const;
  template <typename T>
  T decodeChild(const DecodingContent& content, const TOMLKey& key) const;
  std::vector<TOMLKey> codingPath(const TOMLKey& last) const;
  [[noreturn]] void fail(std::string message) const;

  const TOMLDocument& document() const { return state_->document; }

  std::shared_ptr<const DecodingState> state_;
  DecodingContent content_;
  std::shared_ptr<const PathStep> path_;  ///< none at the root
};

}  // namespace toml
