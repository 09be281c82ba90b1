#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace quarn {

/// A JSON value. Reading is as strict and as lenient as the platform's own coder: a trailing comma is
/// accepted, of equal keys the first counts, and nesting ends at 512. Writing is to the byte what that coder
/// writes.
class Json {
 public:
  using Array = std::vector<Json>;
  /// In the order in which they were read or are to be written, doubled keys included.
  using Object = std::vector<std::pair<std::string, Json>>;

  Json() = default;  ///< null
  Json(bool value) : value_(value) {}
  Json(std::int64_t value) : value_(value) {}
  /// Finite: there is no text for another number.
  Json(double value);
  Json(std::string value) : value_(std::move(value)) {}
  Json(const char* value) : value_(std::string(value)) {}
  Json(Array value) : value_(std::move(value)) {}
  Json(Object value) : value_(std::move(value)) {}

  /// Nothing if `bytes` are no JSON text, or are followed by more.
  static std::optional<Json> parse(std::string_view bytes);
  /// Two spaces a level, " : " behind a key, keys in the order of their bytes; no line feed at the end. An
  /// empty array is "[", an empty line, "]".
  std::string prettyText() const;
  /// Without any space, keys in their own order.
  std::string compactText() const;

  bool isNull() const { return std::holds_alternative<std::monostate>(value_); }
  const Array* array() const { return std::get_if<Array>(&value_); }
  const Object* object() const { return std::get_if<Object>(&value_); }
  const std::string* text() const { return std::get_if<std::string>(&value_); }
  const bool* flag() const { return std::get_if<bool>(&value_); }
  /// A whole number within 64 bits, however it was written (5, 5.0, 5e0).
  std::optional<std::int64_t> integer() const;
  /// Any number.
  std::optional<double> number() const;
  /// The value of a key of an object; null pointer if there is none, or if it is null.
  const Json* member(std::string_view key) const;

  /// Numbers by their value; objects with their keys in the same order.
  bool operator==(const Json&) const = default;

 private:
  struct Writer;
  enum class Layout { pretty, compact };
  std::string text(Layout layout) const;

  std::variant<std::monostate, bool, std::int64_t, double, std::string, Array, Object> value_;
};

}  // namespace quarn
