#pragma once

#include <optional>
#include <string_view>

#include "Platform/PropertyList.h"

namespace quarn::XMLPropertyList {

/// See `PropertyList::parse`. The text is already decoded but need not be valid UTF-8.
std::optional<PropertyList::Value> parse(std::string_view text);

}  // namespace quarn::XMLPropertyList
