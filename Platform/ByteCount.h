#pragma once

#include <cstdint>
#include <string>

namespace quarn::ByteCount {

/// Bytes for people in KB, MB or GB of powers of 1000, as the Finder shows them: "Zero KB", "12.3 MB",
/// "5,500 GB". Halves are rounded away from zero, and the unit is chosen after rounding.
std::string text(std::int64_t bytes);

}  // namespace quarn::ByteCount
