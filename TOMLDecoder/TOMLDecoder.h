#pragma once

#include <memory>
#include <string>

#include "TOMLDecoder/Decodable.h"
#include "TOMLDecoder/KeyedDecodingContainer.h"
#include "TOMLDecoder/TOMLArray.h"
#include "TOMLDecoder/TOMLTable.h"
#include "TOMLDecoder/UnkeyedDecodingContainer.h"
#include "TOMLDecoder/internal/DecodingImplementation.h"

// The one header that a program includes: records (TOMLDecoder) and direct reads (TOMLTable, TOMLArray).
namespace toml {

/// Turns documents into records (see `Record`).
class TOMLDecoder {
 public:
  using Strategy = toml::Strategy;

  /// Throws TOMLError: as the constructor of TOMLTable does for what isn't a document, and with the line and
  /// the path for what is missing in it or doesn't fit the record.
  template <Decodable T>
  T decode(std::string document) const {
    return Decoding(parsed(std::move(document))).decode<T>();
  }

  /// Whether numbers may be read as types that can't hold them exactly; see `NumberConversion`.
  bool isLenient = false;
  Strategy strategy{};
  /// Handed to every record that is decoded (`Decoding::userInfo`).
  UserInfo userInfo{};

 private:
  std::shared_ptr<const DecodingState> parsed(std::string document) const;
};

}  // namespace toml
