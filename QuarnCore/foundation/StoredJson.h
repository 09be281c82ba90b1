#pragma once

#include <string>
#include <string_view>

#include "Platform/Result.h"
#include "QuarnCore/foundation/JsonDecoder.h"
#include "QuarnCore/foundation/JsonEncoder.h"

/// Reads and writes records as JSON texts, by the list of their keys (`StoredKeys.h`). Only sources that
/// store records include this, never a header.
namespace quarn::StoredJson {

enum class Layout {
  pretty,   ///< on many lines, with sorted keys
  compact,  ///< on one line, with keys in the order of the record
};

/// Returns the text of a record, or of a vector, map or optional of records. Fails only for values that JSON
/// can't represent: bytes that aren't UTF-8, and numbers that aren't finite.
template <class Value>
Result<std::string> write(const Value& value, Layout layout, DateForm dates) {
  JsonEncoder encoder(dates);
  const Json json = encoder.encode(value);
  if (encoder.failure()) return *encoder.failure();
  return layout == Layout::pretty ? json.prettyText() : json.compactText();
}

/// Returns the value in `text`, and ignores keys that the record doesn't have. The description of an error
/// names the place, as in "movedItems[3].sizeBytes is missing".
template <class Value>
Result<Value> read(std::string_view text, DateForm dates) {
  const auto json = Json::parse(text);
  if (!json) return StoredJsonError::notJson();
  JsonDecoder decoder(dates);
  Value value{};
  decoder.decode(*json, value);
  if (decoder.failure()) return *decoder.failure();
  return value;
}

}  // namespace quarn::StoredJson
