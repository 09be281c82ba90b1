#include "QuarnCore/move/Claim.h"

#include "QuarnCore/foundation/FileStash.h"
#include "QuarnCore/move/MoverError.h"

namespace quarn {

Claim::Claim(Platform& platform, const Path& place, const Path& source)
    : place_(place), kind_(platform.files.isFolder(source) ? FileKind::folder : FileKind::regular) {
  const auto claimed = platform.files.claim(place, kind_);
  // Asked of the error and not looked up before: a check could be outdated by the time of the claim.
  if (!claimed && claimed.error().code == CocoaErrorCode::fileWriteFileExists)
    throw MoverError::destinationExists();
  if (!claimed) throw MoverError::copyFailed(claimed.error().localizedDescription());
  const auto made = platform.files.attributes(place);
  if (!made) throw MoverError::copyFailed(made.error().localizedDescription());
  identity_ = made->identity;
}

/// The copying tool may replace a file that was claimed by a new one. A folder is never replaced, so a
/// different folder isn't ours.
bool Claim::isOurs(const ReadOnlyPlatform& platform) const {
  const auto found = platform.files.attributes(place_);
  if (!found || found->identity.device != identity_.device) return false;
  return found->kind != FileKind::folder || found->identity == identity_;
}

bool Claim::isEmpty(const ReadOnlyPlatform& platform) const {
  const auto found = platform.files.attributes(place_);
  return found && found->kind == kind_ && isOurs(platform) && holdsNothing(platform, place_);
}

/// Failures are ignored, because the move has already failed and its error is the one to report.
void Claim::giveBack(Platform& platform) const {
  if (isEmpty(platform)) {
    platform.files.remove(place_).orIgnore();
  } else if (isOurs(platform)) {
    MoverStasher::stash(platform, place_);
  }
}

bool holdsNothing(const ReadOnlyPlatform& platform, const Path& item) {
  const auto attributes = platform.files.attributes(item);
  if (!attributes) return false;
  if (attributes->kind == FileKind::regular) return attributes->size == 0;
  if (attributes->kind != FileKind::folder) return false;
  const auto names = platform.files.list(item, Hidden::included);
  return names && names->empty();
}

}  // namespace quarn
