#pragma once

#include "tests/cli/Campaign.h"

/// How a campaign looks at what a run left.
namespace campaign {

// The tree.

bool isAtOrBelow(const std::string& path, const std::string& root);
Lines everything();
/// Kind, mode and content; of a folder, what doesn't depend on what it holds.
std::string facts(const std::string& path);
Lines named(const std::string& folder, const std::string& beginning);

// What was said.

Lines linesOf(const std::string& text);
long count(const std::string& said, const std::string& beginning);
bool says(const std::string& said, const std::string& text);

}  // namespace campaign
