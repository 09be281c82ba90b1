#pragma once

#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "QuarnCLI/report/ReportText.h"

namespace quarn::TOMLFormatter {

/// A value in double quotes, with backslashes and double quotes escaped and nothing else: a line feed
/// breaks the line.
std::string q(std::string_view text);

/// The same, with line feeds escaped, too.
std::string singleLine(std::string_view text);

/// `key = "text"`, `key = 42` and `key = true`.
std::string keyed(std::string_view key, const std::string& text);
std::string keyed(std::string_view key, std::int64_t number);
std::string keyed(std::string_view key, std::same_as<bool> auto flag) {
  return std::string(key) + " = " + ReportText::word(flag);
}

/// `key = ["a", "b"]`.
std::string array(std::string_view key, const std::vector<std::string>& values);

}  // namespace quarn::TOMLFormatter
