#pragma once

#include <any>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "TOMLDecoder/Strategy.h"
#include "TOMLDecoder/TOMLKey.h"
#include "TOMLDecoder/internal/TOMLDocument.h"

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

}  // namespace toml
