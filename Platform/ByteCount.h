#pragma once

#include <cstdint>
#include <string>

namespace quarn::ByteCount {

/// Returns a number of bytes for people to read, in KB, MB or GB, which are powers of 1000: "Zero KB", "12.3
/// MB", "5,500 GB". Halves are rounded away from zero, and the unit is chosen after rounding.
std::string text(std::int64_t bytes);

}  // namespace quarn::ByteCount
