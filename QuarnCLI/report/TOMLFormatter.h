#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quarn::TOMLFormatter {

/// A value in double quotes, with backslashes and double quotes escaped and nothing else: a line feed
/// breaks the line.
std::string q(std::string_view text);

/// The same, with line feeds escaped, too.
std::string singleLine(std::string_view text);

/// `key = ["a", "b"]`.
std::string array(std::string_view key, const std::vector<std::string>& values);

}  // namespace quarn::TOMLFormatter
