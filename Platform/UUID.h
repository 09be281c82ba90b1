#pragma once

#include <string>

namespace quarn::UUID {

/// Returns a new random identifier in upper case, grouped 8-4-4-4-12.
std::string make();

}  // namespace quarn::UUID
