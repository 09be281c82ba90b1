#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace quarn {

/// A JSON value. Reading is as strict and as lenient as the platform's own coder: a trailing comma is
/// accepted, of equal keys the first wins, and nesting ends at 512. Writing is its pretty form with
/// sorted keys.
class Json {
 public:
  using Array = std::vector<Json>;
  using Object = std::map<std::string, Json>;

  Json() = default;  ///< null
  Json(bool value) : value_(value) {}
  Json(std::int64_t value) : value_(value) {}
  Json(double value) : value_(value) {}
  Json(std::string value) : value_(std::move(value)) {}
  Json(const char* value) : value_(std::string(value)) {}
  Json(Array value) : value_(std::move(value)) {}
  Json(Object value) : value_(std::move(value)) {}

  /// Nothing if `bytes` are no JSON text, or are followed by more.
  static std::optional<Json> parse(std::string_view bytes);
  /// Two blanks a level, " : " behind a key, keys in the order of their bytes, "/" written as "\/"; no
  /// line feed at the end. An empty array is "[", an empty line, "]".
  std::string prettyText() const;

  const Array* array() const { return std::get_if<Array>(&value_); }
  const std::string* text() const { return std::get_if<std::string>(&value_); }
  /// A whole number within 64 bits, however it was written (5, 5.0, 5e0).
  std::optional<std::int64_t> integer() const;
  /// The value of a key of an object; null pointer if there is none, or if it is null.
  const Json* member(const std::string& key) const;

  bool operator==(const Json&) const = default;

 private:
  struct PrettyWriter;

  std::variant<std::monostate, bool, std::int64_t, double, std::string, Array, Object> value_;
};

}  // namespace quarn
