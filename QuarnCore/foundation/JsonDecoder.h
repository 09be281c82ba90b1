#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "Platform/DateText.h"
#include "Platform/Json.h"
#include "QuarnCore/foundation/KeyPath.h"
#include "QuarnCore/foundation/RawValues.h"
#include "QuarnCore/foundation/StoredJsonError.h"
#include "QuarnCore/foundation/StoredKeys.h"

namespace quarn {

/// How a moment is stored.
enum class DateForm {
  iso8601,           ///< "2026-01-31T09:05:00Z", in whole seconds
  secondsSince2001,  ///< a number, with a fraction if needed
};

/// Reads values from JSON. After an error it continues, so that callers needn't check every step; what it has
/// read must then be discarded.
class JsonDecoder {
 public:
  explicit JsonDecoder(DateForm dates) : dates_(dates) {}

  /// Returns the first error.
  const std::optional<PlatformError>& failure() const { return failure_; }

  void decode(const Json& json, bool& value);
  void decode(const Json& json, std::int64_t& value);
  void decode(const Json& json, double& value);
  void decode(const Json& json, std::string& value);
  void decode(const Json& json, Moment& value);

  template <class Value>
  void decode(const Json& json, std::optional<Value>& value) {
    value.reset();
    if (!json.isNull()) decode(json, value.emplace());
  }

  template <class Value>
  void decode(const Json& json, std::vector<Value>& values) {
    if (!json.array()) return fail(StoredJsonError::wrongType);
    values.clear();
    for (const Json& item : *json.array()) {
      path_.within(values.size(), [&] { decode(item, values.emplace_back()); });
    }
  }

  template <class Value>
  void decode(const Json& json, std::map<std::string, Value>& values) {
    if (!json.object()) return fail(StoredJsonError::wrongType);
    values.clear();
    for (const auto& member : *json.object()) {
      const auto made = values.try_emplace(member.first);
      if (made.second) path_.within(member.first, [&] { decode(member.second, made.first->second); });
    }
  }

  template <HasRawValues Enum>
  void decode(const Json& json, Enum& value) {
    const auto known = json.text() ? fromRawValue<Enum>(*json.text()) : std::nullopt;
    take(known, value);
  }

  template <HasStoredKeys Record>
  void decode(const Json& json, Record& record) {
    if (!json.object()) return fail(StoredJsonError::wrongType);
    std::apply([&](const auto&... keys) { (decodeMember(json, keys, record), ...); }, checkedKeys<Record>());
  }

 private:
  template <class Record, class Value>
  void decodeMember(const Json& object, const StoredKey<Record, Value>& key, Record& record) {
    path_.within(key.name, [&] {
      const Json* json = object.member(key.name);
      if (json) return decode(*json, record.*key.member);
      if (!key.mayBeAbsent()) fail(StoredJsonError::missing);
    });
  }

  template <class Value>
  void take(const std::optional<Value>& found, Value& value) {
    if (!found) return fail(StoredJsonError::wrongType);
    value = *found;
  }
  void fail(PlatformError (*error)(const std::string& keyPath));

  DateForm dates_;
  KeyPath path_;
  std::optional<PlatformError> failure_;
};

}  // namespace quarn
