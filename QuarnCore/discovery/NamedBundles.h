#pragma once

#include <string_view>
#include <vector>

namespace quarn::NamedBundles {

/// The application bundles that a line of the process list names: what the first group of
/// `(/[^"\n]+?\.app)(?:/Contents/|\s|$)` captures in each match, in order of appearance. A path is as short
/// as can be, so that a helper inside a bundle names the outer one; blanks belong to it. Takes one pass,
/// however long the line is. `line` is UTF-8 without a line feed; the parts point into it.
std::vector<std::string_view> inLine(std::string_view line);

}  // namespace quarn::NamedBundles
