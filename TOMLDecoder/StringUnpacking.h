#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace toml {

/// Turns the token of a string, which has its quotes, into the text.
namespace StringUnpacking {

/// Throws TOMLError without a line: `invalidString` for what has no quotes, `invalidCharacter` for a
/// control character, and what a wrong escape brings forth.
std::string unpack(std::string_view token);

/// The text if the token, which has quotes, holds it byte for byte.
std::optional<std::string_view> plainText(std::string_view token);

bool isMultiline(std::string_view token);

}  // namespace StringUnpacking

}  // namespace toml
