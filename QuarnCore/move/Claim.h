#pragma once

#include "Platform/Platform.h"

namespace quarn {

/// A place that one run has made its own before it copies there: of two people who move something of one name
/// to one drive, one gets it, and a folder isn't merged into that of another run. What stands at the place is
/// set aside only while it is what the run has made: another drive may have taken the name of the one that
/// was claimed on.
class Claim {
 public:
  /// For the copy of an item. Throws `MoverError::destinationExists`, with nothing touched, or
  /// `MoverError::copyFailed`.
  Claim(Platform& platform, const Path& place, const Path& source);

  /// Nothing has been copied there yet.
  bool isEmpty(const ReadOnlyPlatform& platform) const;
  /// Clears the place: what was copied goes to the Trash or beside, an empty claim goes altogether.
  void giveBack(Platform& platform) const;

 private:
  bool isOurs(const ReadOnlyPlatform& platform) const;

  Path place_;
  FileKind kind_;
  FileIdentity identity_;
};

/// An item that holds nothing: a folder without entries, a file without bytes.
bool holdsNothing(const ReadOnlyPlatform& platform, const Path& item);

}  // namespace quarn
