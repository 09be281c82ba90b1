#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

/// Property lists, XML and binary, as plist(5) describes them. They are read and written the same way on
/// every system, by pure functions.
namespace quarn::PropertyList {

/// The deepest nesting of containers that is accepted.
constexpr int deepestNesting = 512;

struct Value;
using Array = std::vector<Value>;
using Dictionary = std::map<std::string, Value>;

/// A 128-bit whole number in two's complement, the widest that a binary list holds. XML lists hold those from
/// -2^63 to 2^64 - 1.
struct Integer {
  std::int64_t high = 0;  ///< 0 or -1 for a number of 64 bits
  std::uint64_t low = 0;
  bool operator==(const Integer&) const = default;
};

struct Date {
  double seconds = 0;  ///< since 1 January 2001, UTC
  bool operator==(const Date&) const = default;
};

struct Data {
  std::string bytes;
  bool operator==(const Data&) const = default;
};

/// A reference to another object in an archive of objects.
struct UID {
  std::uint32_t number = 0;
  bool operator==(const UID&) const = default;
};

struct Value {
  /// Texts are UTF-8. The empty value occurs only in binary lists.
  std::variant<std::monostate, Dictionary, Array, std::string, Integer, double, bool, Date, Data, UID>
      content;

  /// Returns a null pointer if the value is of another kind.
  template <class Kind>
  const Kind* as() const {
    return std::get_if<Kind>(&content);
  }
  bool operator==(const Value&) const = default;
};

/// Returns nothing if the bytes aren't a property list. One wrong value anywhere refuses the whole list.
///
/// XML is in the encoding of its byte-order mark (UTF-8, UTF-16 or UTF-32), else in the declared one (UTF-8,
/// US-ASCII or ISO-8859-1), else in UTF-8. Whatever follows the first value, or its `<plist>`, isn't read.
/// Element names are case-sensitive. Texts keep their white space and line ends. If a key occurs twice, the
/// last one counts in XML and the first one in a binary list. White space alone is an empty dictionary; an
/// empty file is refused. The old format without tags is refused.
///
/// Also refused: containers nested deeper than `deepestNesting`; a list that expands too far (its values,
/// each copied to every place that refers to it and counted as 64 bytes plus its content, take more than 64
/// MiB beyond the size of the list); a key of a binary list that isn't a text; a key that contains a NUL;
/// and, in XML, a text that contains a NUL.
std::optional<Value> parse(std::string_view bytes);

/// Returns the values at the top of a property list that are texts, by key. Values of other types are left
/// out. Returns nothing if the bytes aren't a property list or its root isn't a dictionary.
std::optional<std::map<std::string, std::string>> texts(std::string_view bytes);

/// Returns an XML list with these texts at its top, byte for byte as a Mac writes it: keys are sorted by
/// their UTF-16 code units, and only "&", "<" and ">" are escaped. Keys and texts must be UTF-8 without a
/// NUL, or the list can't be read back.
std::string xml(const std::map<std::string, std::string>& texts);

}  // namespace quarn::PropertyList
