#include "QuarnCore/move/PathPair.h"

#include "Platform/Text.h"
#include "QuarnCore/foundation/Sighting.h"
#include "QuarnCore/move/MoverError.h"

namespace quarn::PathPair {
void requireSafe(const ReadOnlyPlatform& platform, const Path& source, const Path& destination) {
  if (!platform.files.exists(source)) {
    sight(platform.files, source).orThrow();
    throw MoveRefused("Source path does not exist: " + source.text());
  }
  if (Text::equal(source.text(), destination.text())) {
    throw MoveRefused("Source and destination are the same path.");
  }
  const Sighting from = sight(platform.files, source).orThrow();
  const Sighting to = sight(platform.files, destination).orThrow();
  if (to.isAtOrIn(from)) {
    throw MoveRefused("Destination lies inside the source: " + destination.text());
  }
  // A destination that doesn't exist can't contain the source.
  if (!platform.files.exists(destination)) return;
  if (from.isAtOrIn(to)) {
    throw MoveRefused("Source lies inside the destination: " + destination.text());
  }
  if (!platform.files.isFolder(source) && platform.files.isFolder(destination)) {
    throw MoveRefused("Destination is a folder, but the source is not: " + destination.text());
  }
}

}  // namespace quarn::PathPair
