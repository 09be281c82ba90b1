#pragma once

#include <vector>

#include "Platform/FileSystem.h"

namespace quarn {

/// Everything that tells where an item is: its path, the path it leads to, and the identities on the disk. By
/// its identity an item is recognized whatever name a case-insensitive volume or a second mount gives it.
struct Sighting {
  Path spelled;         ///< standardized
  Path leadsTo;         ///< with every link on the path resolved as far as the path exists
  bool isLink = false;  ///< the item itself is a link
  bool exists = false;  ///< the item, or the target of the link, exists
  /// The identity of what the path leads to, if that exists, followed by those of all existing folders around
  /// it.
  std::vector<FileIdentity> identities;

  /// Returns whether this is `folder` or lies anywhere in it, by its path, by what it leads to, or by
  /// identity.
  bool isAtOrIn(const Sighting& folder) const;
};

/// Returns whether a path is `folder` or lies anywhere in it, judged by the text alone. Letter case matters;
/// canonically equivalent spellings are equal.
bool isAtOrInByText(const Path& item, const Path& folder);
/// Returns whether a path lies inside one of the folders, judged in the same way.
bool isInsideAnyByText(const Path& item, const std::vector<Path>& folders);

/// Looks at an item, following links. Changes nothing and never throws.
Sighting sight(const FileSystem& files, const Path& item);
/// Looks at an item itself. If it is a link, describes the place of the link and not its target.
Sighting sightItself(const FileSystem& files, const Path& item);
/// Describes a path without looking at the disk.
Sighting unseen(const Path& standardized);

}  // namespace quarn
