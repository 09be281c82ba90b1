#pragma once

#include <optional>
#include <string_view>

#include "Platform/PropertyList.h"

namespace quarn::BinaryPropertyList {

constexpr std::string_view signature = "bplist00";

/// See `PropertyList::parse`. The bytes must begin with the signature.
std::optional<PropertyList::Value> parse(std::string_view bytes);

}  // namespace quarn::BinaryPropertyList
