#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quarn::ReportText {

/// Lines joined by one line feed, with one at the end; no lines at all give one line feed.
std::string joined(const std::vector<std::string>& lines);

/// The same, but no lines at all give nothing.
std::string joinedOrNothing(const std::vector<std::string>& lines);

/// Pieces joined by a separator.
std::string join(const std::vector<std::string>& pieces, std::string_view separator);

/// "true" or "false".
std::string word(bool flag);

/// Fields joined by tabs. Nothing is escaped: a tab or a line feed in a value passes through.
std::string tabSeparated(const std::vector<std::string>& fields);

}  // namespace quarn::ReportText
