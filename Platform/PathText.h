#pragma once

#include <string>
#include <string_view>

#include "Platform/Path.h"
#include "Platform/Places.h"

namespace quarn::PathText {

/// Expands "~", "~/x" and "~name/x" to the home folder. Returns a text without a leading "~", or with an
/// unknown user, unchanged. Keeps a trailing slash that follows a path.
std::string expandingTilde(const Places& places, const std::string& text);

/// Returns the absolute path that a text stands for now: a relative path starts at the current folder.
/// Doesn't standardize it and doesn't expand "~".
Path fileURL(const Places& places, std::string_view text);

/// Returns the path that the text in a link stands for: a relative one starts at the folder that holds the
/// link. Simplifies nothing, because ".." behind a further link leads to wherever that one leads.
Path linkTarget(const Path& link, std::string_view text);

}  // namespace quarn::PathText
