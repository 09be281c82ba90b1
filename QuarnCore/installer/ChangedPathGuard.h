#pragma once

#include <vector>

#include "QuarnCore/discovery/ProtectedPlaces.h"
#include "QuarnCore/installer/InstallerSession.h"

namespace quarn {

/// Tells which of the paths in a session an installation can have brought. A session may have been written by
/// anyone, and may hold what the system reports when it has lost events: "/", or the top of a volume. It only
/// looks, and knows the places as they were when it was made.
class ChangedPathGuard {
 public:
  ChangedPathGuard(const ReadOnlyPlatform& platform, const InstallerSession& session);

  /// Returns whether a path lies inside one of the folders that are watched during an installation or in the
  /// session's folder for applications on its drive, or is a launcher. Nothing that belongs where it is, no
  /// record or backup of this tool and nothing with a volume mounted inside is allowed. Links on the way to
  /// the item are resolved first; the item itself may be a link.
  bool allows(const Path& path) const;

 private:
  ReadOnlyPlatform platform_;
  ProtectedPlaces protected_;
  std::vector<Path> folders_;  ///< with their links resolved
};

}  // namespace quarn
