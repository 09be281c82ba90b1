#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "QuarnCore/health/FolderChildren.h"
#include "QuarnCore/health/HealthIssue.h"

/// What stands in the folders in which moved items leave links. Nothing here throws, and a folder that can't
/// be read contributes nothing. Targets are what the link's own text says, simplified as text; a chain of
/// links is not followed further.
namespace quarn {

/// Tells the bundles of application folders apart: those that are links and those that are real. Looks at
/// direct children alone.
namespace ApplicationsRootScan {

struct Symlink {
  Path location;
  Path target;
  bool operator==(const Symlink&) const = default;
};

struct Result {
  std::vector<Symlink> symlinks;  ///< in the order of the disk
  TextSet realAppNames;           ///< with their extension
  /// Every folder that exists could be listed, and each of its bundles looked at. Otherwise there may be
  /// links that are in no list.
  bool isWhole = true;
  bool operator==(const Result&) const = default;
};

/// A link whose text can't be read is in neither list. An item that can't be looked up counts as real.
Result scan(const ReadOnlyPlatform& platform, const std::vector<Path>& roots);

}  // namespace ApplicationsRootScan

/// A link of any name.
struct SymlinkEntry {
  std::string id;  ///< the path of the link
  Path location;
  Path target;
  bool isValid = false;         ///< the target exists
  std::int64_t targetSize = 0;  ///< in bytes; 0 if the target is missing
  bool operator==(const SymlinkEntry&) const = default;
};

namespace SymlinkScanner {

/// Returns the folders in which a user's links usually are.
std::vector<Path> defaultRoots(const Places& places);
/// Returns the links among the direct children of the folders, sorted by path, each path once. Skips hidden
/// ones and those whose text can't be read.
std::vector<SymlinkEntry> scan(const ReadOnlyPlatform& platform, const std::vector<Path>& roots);

}  // namespace SymlinkScanner

namespace SymlinkInspector {

/// Judges a link to an application by looking at its target: dangling, empty, corrupted or healthy. The size
/// is that of the target.
HealthIssue inspect(const ReadOnlyPlatform& platform, const Path& location, const Path& target);

}  // namespace SymlinkInspector
}  // namespace quarn
