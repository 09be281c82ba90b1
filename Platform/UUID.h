#pragma once

#include <string>

namespace quarn::UUID {

/// A new random identifier as upper-case text, 8-4-4-4-12.
std::string make();

}  // namespace quarn::UUID
