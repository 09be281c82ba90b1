#pragma once

#include <memory>
#include <string>
#include <vector>

#include "TOMLDecoder/TOMLError.h"
#include "TOMLDecoder/internal/DecodingState.h"

namespace toml {

class KeyedDecodingContainer;
class UnkeyedDecodingContainer;

/// A part of a document that is being decoded. Copies share the document and may outlive the decoding.
class Decoding {
 public:
  /// Records that hold records of their own type are decoded down to this depth.
  static constexpr std::size_t mostDepth = 512;

  explicit Decoding(std::shared_ptr<const DecodingState> state);

  /// Throw TOMLError `typeMismatch` unless this is a table, or an array.
  KeyedDecodingContainer keyed() const;
  UnkeyedDecodingContainer unkeyed() const;
  /// All of this as another type: how a record decodes itself that is neither a table nor an array.
  /// Throws TOMLError with the line and the path.
  template <typename T>
  T decode() const;

  /// For checks of one's own: throws TOMLError `typeMismatch` with the message, and with the line and the
  /// path of this part.
  [[noreturn]] void fail(std::string message) const;

  std::vector<TOMLKey> codingPath() const;
  const Strategy& strategy() const { return state_->strategy; }
  bool isLenient() const { return state_->isLenient; }
  const UserInfo& userInfo() const { return state_->userInfo; }

 private:
  friend class KeyedDecodingContainer;
  friend class UnkeyedDecodingContainer;

  /// Throws TOMLError `typeMismatch` beyond the depth.
  Decoding child(const Content& content, const TOMLKey& key) const;
  template <typename T>
  T decodeChild(const Content& content, const TOMLKey& key) const;
  std::vector<TOMLKey> codingPath(const TOMLKey& last) const;
  std::uint32_t lineNumber() const { return document().lineNumber(content_.place); }
  /// An error that comes from a record or a `DecodingOf`, with the line and the path of this part.
  TOMLError located(const TOMLError& error) const;
  [[noreturn]] void failAsFound(const char* message) const;

  const TOMLDocument& document() const { return state_->document; }

  std::shared_ptr<const DecodingState> state_;
  Content content_;
  std::shared_ptr<const PathStep> path_;  ///< null at the root
};

}  // namespace toml
