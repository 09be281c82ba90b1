#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

/// Property lists, XML and binary, as `man 5 plist` has them. Read the same way on every system, and pure.
namespace quarn::PropertyList {

/// Of containers within each other.
constexpr int deepestNesting = 512;

struct Value;
using Array = std::vector<Value>;
using Dictionary = std::map<std::string, Value>;

/// A whole number in two's complement of 128 bits, the widest that a binary list holds. XML has those from
/// -2^63 to 2^64 - 1.
struct Integer {
  std::int64_t high = 0;  ///< 0 or -1 for a number of 64 bits
  std::uint64_t low = 0;
  bool operator==(const Integer&) const = default;
};

struct Date {
  double seconds = 0;  ///< since the beginning of 2001, UTC
  bool operator==(const Date&) const = default;
};

struct Data {
  std::string bytes;
  bool operator==(const Data&) const = default;
};

/// What an archive of objects calls another of its objects by.
struct UID {
  std::uint32_t number = 0;
  bool operator==(const UID&) const = default;
};

struct Value {
  /// Texts are UTF-8. Nothing at all is a value that binary lists alone have.
  std::variant<std::monostate, Dictionary, Array, std::string, Integer, double, bool, Date, Data, UID>
      content;

  /// Null pointer if the value is of another kind.
  template <class Kind>
  const Kind* as() const {
    return std::get_if<Kind>(&content);
  }
  bool operator==(const Value&) const = default;
};

/// Nothing if the bytes are no property list: one wrong value anywhere fails the whole of it.
///
/// XML is UTF-8, or what its byte-order mark (UTF-8, -16, -32) or else its declaration (UTF-8, US-ASCII,
/// ISO-8859-1) says. What follows the first value, or its `<plist>`, isn't read. Names of elements are
/// case-sensitive, texts stay as they are, line ends too. Of a key that occurs twice the last counts in
/// XML, the first in a binary list. White space alone is an empty dictionary, and no bytes at all are no
/// list. The old format without tags is refused.
///
/// Refused as well: containers deeper than `deepestNesting`; a list whose values, each copied to every place
/// that refers to it and counted as 64 bytes beside its content, fill more than 64 MiB beyond the size of the
/// list; a key of a binary list that is no text; a key with a NUL; a NUL in a text of XML.
std::optional<Value> parse(std::string_view bytes);

/// The text values at the top of a property list, by key. Values of other types are left out. Nothing if
/// the bytes are no property list or its root is no dictionary.
std::optional<std::map<std::string, std::string>> texts(std::string_view bytes);

}  // namespace quarn::PropertyList
