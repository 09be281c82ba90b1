#pragma once

#include <concepts>

#include "QuarnCore/foundation/JsonDecoder.h"

namespace quarn {

/// Converts values to JSON. It is the counterpart of `JsonDecoder`.
class JsonEncoder {
 public:
  explicit JsonEncoder(DateForm dates) : dates_(dates) {}

  /// Returns the error for the first value that JSON can't represent.
  const std::optional<PlatformError>& failure() const { return failure_; }

  Json encode(std::same_as<bool> auto value) { return value; }
  Json encode(std::int64_t value) { return value; }
  Json encode(double value);
  Json encode(const std::string& value);
  Json encode(Moment value);

  template <class Value>
  Json encode(const std::optional<Value>& value) {
    return value ? encode(*value) : Json();
  }

  template <class Value>
  Json encode(const std::vector<Value>& values) {
    Json::Array items;
    for (const Value& value : values) {
      path_.within(items.size(), [&] { items.push_back(encode(value)); });
    }
    return items;
  }

  template <class Value>
  Json encode(const std::map<std::string, Value>& values) {
    Json::Object members;
    for (const auto& [key, value] : values) add(members, key, value);
    return members;
  }

  template <HasRawValues Enum>
  Json encode(Enum value) {
    return std::string(rawValue(value));
  }

  template <HasStoredKeys Record>
  Json encode(const Record& record) {
    Json::Object members;
    std::apply([&](const auto&... keys) { (add(members, keys.name, record.*keys.member), ...); },
               checkedKeys<Record>());
    return members;
  }

 private:
  template <class Value>
  void add(Json::Object& members, std::string_view key, const Value& value) {
    path_.within(key, [&] {
      expectText(key);
      members.emplace_back(std::string(key), encode(value));
    });
  }
  /// Leaves the key out if the optional has no value.
  template <class Value>
  void add(Json::Object& members, std::string_view key, const std::optional<Value>& value) {
    if (value) add(members, key, *value);
  }
  void expectText(std::string_view bytes);
  void fail();

  DateForm dates_;
  KeyPath path_;
  std::optional<PlatformError> failure_;
};

}  // namespace quarn
