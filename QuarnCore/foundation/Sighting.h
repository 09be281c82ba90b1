#pragma once

#include <optional>
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
  /// Why a part of this couldn't be looked at, though it may exist. What is said above may then be wrong.
  std::optional<PlatformError> failure;

  /// Returns whether this is `folder` or lies anywhere in it, by its path, by what it leads to, or by
  /// identity.
  bool isAtOrIn(const Sighting& folder) const;
  /// Throws the failure, if there is one. For whoever relies on the rest to change something.
  Sighting orThrow() &&;
};

/// Returns whether a path is `folder` or lies anywhere in it, judged by the text alone. Letter case matters;
/// canonically equivalent spellings are equal.
bool isAtOrInByText(const Path& item, const Path& folder);
/// Returns whether a path lies inside one of the folders, judged in the same way.
bool isInsideAnyByText(const Path& item, const std::vector<Path>& folders);

/// Returns whether what a path leads to is what `folder` leads to, or lies anywhere in it. Neither has to
/// exist. Throws if one of them can't be looked at.
bool leadsInto(const FileSystem& files, const Path& item, const Path& folder);

/// Looks at an item, following links. Changes nothing and never throws.
Sighting sight(const FileSystem& files, const Path& item);
/// Returns whether an item, or what a link leads to, exists, or may: false only if that is certain.
bool mayExist(const FileSystem& files, const Path& item);
/// Looks at an item itself. If it is a link, describes the place of the link and not its target.
Sighting sightItself(const FileSystem& files, const Path& item);
/// Describes a path without looking at the disk.
Sighting unseen(const Path& standardized);

}  // namespace quarn
