#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Platform.h"

namespace quarn {

namespace ProcessList {
/// Returns those lines of `ps` that are of interest, one per process with its name and arguments. Leaves out
/// this process and its ancestors: their arguments name the application that is to move, which doesn't mean
/// that it is running. Returns nothing if `ps` can't be run or its output isn't UTF-8.
std::vector<std::string> lines(const ReadOnlyPlatform& platform,
                               const std::function<bool(const std::string& line)>& isOfInterest);
}  // namespace ProcessList

namespace NamedBundles {
/// Returns the application bundles that a line of the process list names: what the first group of
/// `(/[^"\n]+?\.app)(?:/Contents/|\s|$)` captures in each match, in the order of the line. A path is as short
/// as possible, so a helper inside a bundle names the outer bundle; spaces are part of a path. Takes one
/// pass, however long the line is. `line` must be UTF-8 without a line feed. The result points into it.
std::vector<std::string_view> inLine(std::string_view line);
}  // namespace NamedBundles

}  // namespace quarn
