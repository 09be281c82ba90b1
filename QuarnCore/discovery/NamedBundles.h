#pragma once

#include <string_view>
#include <vector>

namespace quarn::NamedBundles {

/// Returns the application bundles that a line of the process list names: what the first group of
/// `(/[^"\n]+?\.app)(?:/Contents/|\s|$)` captures in each match, in the order of the line. A path is as short
/// as possible, so a helper inside a bundle names the outer bundle; spaces are part of a path. Takes one
/// pass, however long the line is. `line` must be UTF-8 without a line feed. The result points into it.
std::vector<std::string_view> inLine(std::string_view line);

}  // namespace quarn::NamedBundles
