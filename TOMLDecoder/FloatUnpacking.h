#pragma once

#include <string_view>

namespace toml {

/// Turns the token of a float into the number.
namespace FloatUnpacking {

/// Throws TOMLError `invalidFloat`, without a line, for what is no float; an integer is none. A number
/// beyond the largest one is infinite, one too close to zero is zero.
double unpack(std::string_view token);

}  // namespace FloatUnpacking

}  // namespace toml
