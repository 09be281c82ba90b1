#pragma once

#include "Platform/Platform.h"

namespace quarn {

/// A path that a run has claimed before it copies there. If two people move items of the same name to the
/// same drive, only one gets the path, and no folder is merged into that of another run. What is at the path
/// is set aside only if it is what this run made: meanwhile another drive may have taken the name of the one
/// that was claimed on.
class Claim {
 public:
  /// Claims the path for the copy of an item. Throws `MoverError::destinationExists`, with nothing changed,
  /// or `MoverError::copyFailed`.
  Claim(Platform& platform, const Path& place, const Path& source);

  /// Returns whether nothing has been copied there yet.
  bool isEmpty(const ReadOnlyPlatform& platform) const;
  /// Clears the path: moves what was copied to the Trash or beside it, and removes an empty claim.
  void giveBack(Platform& platform) const;

 private:
  bool isOurs(const ReadOnlyPlatform& platform) const;

  Path place_;
  FileKind kind_;
  FileIdentity identity_;
};

/// Returns whether an item is a folder without entries or a file without content.
bool holdsNothing(const ReadOnlyPlatform& platform, const Path& item);

}  // namespace quarn
