#pragma once

#include <optional>
#include <string_view>

#include "Platform/PropertyList.h"

namespace quarn {

namespace BinaryPropertyList {
constexpr std::string_view signature = "bplist00";

/// See `PropertyList::parse`. The bytes must begin with the signature.
std::optional<PropertyList::Value> parse(std::string_view bytes);
}  // namespace BinaryPropertyList

namespace XMLPropertyList {
/// See `PropertyList::parse`. The text is already decoded but need not be valid UTF-8.
std::optional<PropertyList::Value> parse(std::string_view text);
}  // namespace XMLPropertyList

}  // namespace quarn
