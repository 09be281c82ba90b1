#pragma once

#include <string>
#include <utility>

#include "TOMLDecoder/Decodable.h"
#include "TOMLDecoder/DecodingImplementation.h"
#include "TOMLDecoder/KeyedDecodingContainer.h"
#include "TOMLDecoder/UnkeyedDecodingContainer.h"

namespace toml {

/// Turns documents into records (see `Record`).
class TOMLDecoder {
 public:
  using Strategy = toml::Strategy;

  /// Throws TOMLError: as `Parser::parse` does for what is no document, and with the coding path for what is
  /// missing in it or doesn't fit the record.
  template <Decodable T>
  T decode(std::string document) const {
    auto state = std::make_shared<const DecodingState>(DecodingState{
        Parser::parse(std::move(document), strategy.key.transform), strategy, isLenient, userInfo});
    return Decoding(std::move(state)).decode<T>();
  }

  /// Whether numbers may be read as types that can't quite hold them; see `NumberConversion`.
  bool isLenient = false;
  Strategy strategy{};
  UserInfo userInfo{};
};

}  // namespace toml
