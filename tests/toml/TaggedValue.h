#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

/// Tagged JSON as something that can be compared: of a value its type, and what its text means. Floats
/// compare as numbers and every NaN with every other, dates and times to the millisecond, keys in any order.
struct TaggedValue {
  /// Throws std::runtime_error for what is no tagged JSON.
  static TaggedValue parse(std::string_view json);

  enum class Kind { value, array, table };

  Kind kind = Kind::value;
  std::string type;
  std::string meaning;
  std::vector<TaggedValue> elements;
  std::map<std::string, TaggedValue> members;

  bool operator==(const TaggedValue&) const = default;
};
