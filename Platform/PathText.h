#pragma once

#include <string>
#include <string_view>

#include "Platform/Path.h"
#include "Platform/Places.h"

namespace quarn::PathText {

/// "~", "~/x" and "~name/x" with the home put in; a text without a leading "~", or with an unknown
/// user, as it is. A trailing slash behind a path stays.
std::string expandingTilde(const Places& places, const std::string& text);

/// The absolute path that a text means now: a relative one begins at the current folder. Not
/// standardized, no tilde.
Path fileURL(const Places& places, std::string_view text);

}  // namespace quarn::PathText
