#pragma once

#include <cstdint>
#include <string_view>

namespace toml {

/// Turns the token of an integer into the number.
namespace IntegerUnpacking {

/// Throws TOMLError `invalidInteger`, without a line, for what is no integer of 64 bits.
std::int64_t unpack(std::string_view token);

}  // namespace IntegerUnpacking

}  // namespace toml
