#pragma once

#include <any>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "TOMLDecoder/Strategy.h"
#include "TOMLDecoder/TOMLDocument.h"
#include "TOMLDecoder/TOMLKey.h"

namespace toml {

/// What a caller hands to the records that are decoded.
using UserInfo = std::map<std::string, std::any>;

/// What everything that is decoded from one document shares.
struct DecodingState {
  TOMLDocument document;
  Strategy strategy;
  bool isLenient = false;
  UserInfo userInfo;
};

/// A coding path from its end to its start; paths share what they have in common.
struct PathStep {
  std::shared_ptr<const PathStep> parent;
  TOMLKey key;
  std::size_t depth;
};

/// What is decoded: the token of a value, or the index of an array or a table of the document.
struct DecodingContent {
  Entry entry;
  TextRange token;          ///< of a value
  std::uint32_t place = 0;  ///< in the source

  /// "table", "array" or "value".
  const char* name() const;
};

}  // namespace toml
