#pragma once

#include <vector>

#include "Platform/Platform.h"
#include "QuarnCore/foundation/Sighting.h"

namespace quarn {

/// What no record can make this tool move or remove, whoever wrote the record: "/", the top of a volume, the
/// home folder, a folder of applications, the folders of this tool itself, and anything around one of them. A
/// name directly below "/Volumes" stands for a volume, mounted or not. Only looks; never throws. Knows the
/// places as they were when it was made.
class ProtectedPlaces {
 public:
  explicit ProtectedPlaces(const ReadOnlyPlatform& platform);

  /// The item is one of the places or lies around one.
  bool isOneOrAroundOne(const Sighting& item) const;
  /// The item is, or lies in, a folder of this tool: the one in the user's library, or its tree or its
  /// backups on any drive. A link that stands elsewhere and leads into one doesn't.
  bool isInOwnFolder(const Sighting& item) const;

 private:
  const FileSystem& files_;
  std::vector<Sighting> places_;
  std::vector<Sighting> ownFolders_;
};

}  // namespace quarn
