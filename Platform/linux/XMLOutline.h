#pragma once

#include <string_view>

namespace quarn::XMLOutline {

/// Whether the tags of an XML property list close each other, enclose exactly one value, with nothing
/// before or behind it, and every key has a value. What is between the tags isn't read. Nesting beyond
/// 512 is refused.
bool isComplete(std::string_view xml);

}  // namespace quarn::XMLOutline
