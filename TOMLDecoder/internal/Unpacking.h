#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// Turn the token of a value into the value. What they throw has no line: they see the token alone.
namespace toml {

namespace StringUnpacking {

/// `token` has its quotes. Throws TOMLError: `invalidString` for a token without quotes, `invalidCharacter`
/// for a control character, and for a wrong escape `illegalEscapeCharacter`, `expectedHexCharacters`,
/// `invalidHexCharacters` or `illegalUCSCode`.
std::string unpack(std::string_view token);

/// The text if the token, which has quotes, holds it byte for byte.
std::optional<std::string_view> plainText(std::string_view token);

bool isMultiline(std::string_view token);

}  // namespace StringUnpacking

namespace IntegerUnpacking {

/// Throws TOMLError `invalidInteger` for what isn't an integer of 64 bits.
std::int64_t unpack(std::string_view token);

}  // namespace IntegerUnpacking

namespace FloatUnpacking {

/// Throws TOMLError `invalidFloat` for what isn't a float, and for an integer. A number beyond the largest
/// one is infinite, one too close to zero is zero.
double unpack(std::string_view token);

}  // namespace FloatUnpacking

}  // namespace toml
