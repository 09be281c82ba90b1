#pragma once

#include <set>
#include <string>
#include <vector>

#include "Platform/Platform.h"
#include "Platform/Text.h"

namespace quarn {

/// Orders names and paths so that canonically equivalent spellings are one, as a Mac compares them.
struct CanonicalOrder {
  bool operator()(const std::string& a, const std::string& b) const { return Text::precedes(a, b); }
};
using TextSet = std::set<std::string, CanonicalOrder>;

/// The direct children of a folder, in the order of the disk. A folder that is itself a link can't be listed.
namespace FolderChildren {

/// Returns the children that aren't hidden and whose extension is exactly "app", links and files included.
Result<std::vector<Path>> bundles(const ReadOnlyPlatform& platform, const Path& folder);
/// Returns the children that are links, dangling or not. A folder that can't be listed has none.
std::vector<Path> links(const ReadOnlyPlatform& platform, const Path& folder, Hidden hidden);

}  // namespace FolderChildren
}  // namespace quarn
