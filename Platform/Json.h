#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace quarn {

/// A JSON value. The reader accepts and refuses exactly what a Mac's own decoder does: a trailing comma is
/// accepted, the first of equal keys counts, and nesting deeper than 512 is refused. The writer produces the
/// same bytes as a Mac's encoder.
class Json {
 public:
  using Array = std::vector<Json>;
  /// The members in the order in which they were read or will be written, duplicate keys included.
  using Object = std::vector<std::pair<std::string, Json>>;

  Json() = default;  ///< null
  Json(bool value) : value_(value) {}
  Json(std::int64_t value) : value_(value) {}
  /// The number must be finite: JSON has no text for any other.
  Json(double value);
  Json(std::string value) : value_(std::move(value)) {}
  Json(const char* value) : value_(std::string(value)) {}
  Json(Array value) : value_(std::move(value)) {}
  Json(Object value) : value_(std::move(value)) {}

  /// Returns nothing if `bytes` aren't one JSON text, or if anything but white space follows it.
  static std::optional<Json> parse(std::string_view bytes);
  /// Writes two spaces per level, " : " after each key, keys sorted by their bytes, and no line feed at the
  /// end. An empty array is "[", an empty line and "]".
  std::string prettyText() const;
  /// Writes no white space, and keys in their own order.
  std::string compactText() const;

  bool isNull() const { return std::holds_alternative<std::monostate>(value_); }
  const Array* array() const { return std::get_if<Array>(&value_); }
  const Object* object() const { return std::get_if<Object>(&value_); }
  const std::string* text() const { return std::get_if<std::string>(&value_); }
  const bool* flag() const { return std::get_if<bool>(&value_); }
  /// Returns a whole number that fits 64 bits, however it was written (5, 5.0, 5e0).
  std::optional<std::int64_t> integer() const;
  /// Returns any number.
  std::optional<double> number() const;
  /// Returns the value of a key of an object, or a null pointer if the key is missing or its value is null.
  const Json* member(std::string_view key) const;

  /// Compares numbers by value, and objects including the order of their keys.
  bool operator==(const Json&) const = default;

 private:
  struct Writer;
  enum class Layout { pretty, compact };
  std::string text(Layout layout) const;

  std::variant<std::monostate, bool, std::int64_t, double, std::string, Array, Object> value_;
};

}  // namespace quarn
