#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace quarn::PropertyList {

/// The text values at the top of a property list, XML or binary, by key. Values of other types are
/// left out. Nothing if the bytes are no property list or its root is no dictionary; white space alone
/// is an empty dictionary, and no bytes at all are no list.
std::optional<std::map<std::string, std::string>> texts(std::string_view bytes);

}  // namespace quarn::PropertyList
