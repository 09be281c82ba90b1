#pragma once

#include <string>
#include <string_view>

#include "Platform/Result.h"
#include "QuarnCore/foundation/JsonDecoder.h"
#include "QuarnCore/foundation/JsonEncoder.h"

/// Records as JSON texts, by the list of their keys (`StoredKeys.h`). To be included by the sources that
/// store records, and by no header.
namespace quarn::StoredJson {

enum class Layout {
  pretty,   ///< on many lines, keys sorted
  compact,  ///< on one line, keys in the order of the record
};

/// The text of a record, or of a vector, map or optional of records. An error only for what has no form in
/// JSON: bytes that are no text, a number that isn't finite.
template <class Value>
Result<std::string> write(const Value& value, Layout layout, DateForm dates) {
  JsonEncoder encoder(dates);
  const Json json = encoder.encode(value);
  if (encoder.failure()) return *encoder.failure();
  return layout == Layout::pretty ? json.prettyText() : json.compactText();
}

/// What `text` holds, keys that the record doesn't have passed over. The description of an error names the
/// place: "movedItems[3].sizeBytes is missing".
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
