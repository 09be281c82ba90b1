#pragma once

#include <vector>

#include "Platform/FileSystem.h"

namespace quarn {

/// An item by all that tells where it is: its text, what it leads to, and the marks of the disk, under which
/// it is known whatever a volume without letter case, or a second mount, lets it be called.
struct Sighting {
  Path spelled;         ///< standardized
  Path leadsTo;         ///< with every link resolved on the way, as far as there is one
  bool isLink = false;  ///< the item itself
  bool exists = false;  ///< what it leads to
  /// Of what it leads to, if that exists, then of each folder around it that exists.
  std::vector<FileIdentity> identities;

  /// It is `folder` or lies anywhere in it, by any of what tells where it is.
  bool isAtOrIn(const Sighting& folder) const;
};

/// By the texts alone: it is `folder` or lies anywhere in it. Letter case counts, canonically equivalent
/// spellings are one.
bool isAtOrInByText(const Path& item, const Path& folder);

/// Only looks; never throws.
Sighting sight(const FileSystem& files, const Path& item);
/// Of the item itself and not of what it leads to, which matters where it is a link.
Sighting sightItself(const FileSystem& files, const Path& item);
/// By its text alone.
Sighting unseen(const Path& standardized);

}  // namespace quarn
