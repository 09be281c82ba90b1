#pragma once

#include <string>
#include <vector>

/// Regular expressions, as ECMAScript has them, for texts that differ from run to run. Compiled once: each
/// source that includes <regex> itself takes seconds longer to compile.
namespace patterns {

/// The whole text matches.
bool match(const std::string& text, const std::string& pattern);
/// Some part of the text matches.
bool search(const std::string& text, const std::string& pattern);
/// Replaces each part that matches; `$1` stands for what the first group matched, `$&` for all of it.
std::string replace(const std::string& text, const std::string& pattern, const std::string& with);
/// The groups of each part that matches, all of the part as group 0.
std::vector<std::vector<std::string>> groups(const std::string& text, const std::string& pattern);

}  // namespace patterns
