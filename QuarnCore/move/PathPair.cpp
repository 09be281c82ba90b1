#include "QuarnCore/move/PathPair.h"

#include "Platform/Text.h"
#include "QuarnCore/move/MoveRefused.h"

namespace quarn::PathPair {
namespace {

Path nearestExisting(Platform& platform, Path item) {
  while (!platform.files.exists(item) && item.parent() != item) item = item.parent();
  return item;
}

/// The way from `item` up to the root passes `folder`, or begins there.
bool leadsInto(Platform& platform, const Path& folder, const Path& item) {
  const auto wanted = platform.files.attributes(platform.files.resolvingLinks(folder));
  for (Path current = platform.files.resolvingLinks(nearestExisting(platform, item));;
       current = current.parent()) {
    const auto found = platform.files.attributes(current);
    if (wanted && found && wanted->identity == found->identity) return true;
    if (current.parent() == current) return false;
  }
}

}  // namespace

void requireSafe(Platform& platform, const Path& source, const Path& destination) {
  if (!platform.files.exists(source)) {
    throw MoveRefused("Source path does not exist: " + source.text());
  }
  if (Text::equal(source.text(), destination.text())) {
    throw MoveRefused("Source and destination are the same path.");
  }
  if (leadsInto(platform, source, destination)) {
    throw MoveRefused("Destination lies inside the source: " + destination.text());
  }
  if (!platform.files.exists(destination)) return;
  if (leadsInto(platform, destination, source)) {
    throw MoveRefused("Source lies inside the destination: " + destination.text());
  }
  if (!platform.files.isDirectory(source) && platform.files.isDirectory(destination)) {
    throw MoveRefused("Destination is a folder, and the source is none: " + destination.text());
  }
}

}  // namespace quarn::PathPair
