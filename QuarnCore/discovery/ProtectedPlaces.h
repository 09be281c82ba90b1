#pragma once

#include <vector>

#include "Platform/Platform.h"
#include "QuarnCore/foundation/Sighting.h"

namespace quarn {

/// The places that this tool never moves or removes, whatever a record says and whoever wrote it: "/", the
/// top of a volume, the home folder, a folder for applications, this tool's own folders, and anything that
/// contains one of them. A name directly below /Volumes counts as a volume, mounted or not. Only looks, and
/// never throws. It knows the places as they were when it was made.
class ProtectedPlaces {
 public:
  explicit ProtectedPlaces(const ReadOnlyPlatform& platform);

  /// Returns whether the item is one of the places or contains one.
  bool isOneOrAroundOne(const Sighting& item) const;
  /// Returns whether the item is, or lies in, a folder of this tool: the one in the user's library, or its
  /// root folder or its backups on any drive. A link elsewhere that leads into one doesn't count.
  bool isInOwnFolder(const Sighting& item) const;
  /// Returns whether the item is, or lies in, this tool's folder in the user's library or its backups on any
  /// drive. A link counts by where it leads unless the sighting is that of the link itself.
  bool isRecordOrBackup(const Sighting& item) const;

 private:
  bool isInBackups(const Path& resolved) const;

  const FileSystem& files_;
  const Volumes& volumes_;
  std::vector<Sighting> places_;
  std::vector<Sighting> ownFolders_;
  std::vector<Sighting> recordsAndBackups_;
};

}  // namespace quarn
