#include "QuarnCore/foundation/FileStash.h"

#include "Platform/DateText.h"
#include "Platform/FittingName.h"

namespace quarn {
namespace {

/// In the folder beside it, the name of the item gets an end, and a number if that name is taken.
std::optional<Path> moveToTrashOrBeside(Platform& platform, const Path& item, const std::string& end) {
  if (auto inTrash = platform.trash.moveToTrash(item).asOptional()) return inTrash;
  const Path folder = FileStash::folderBeside(item);
  platform.files.createFolder(folder).orIgnore();
  for (int number = 1;; ++number) {
    const std::string whole = number == 1 ? end : end + "-" + std::to_string(number);
    const Path beside = folder.appending(FittingName::of(item.lastComponent(), whole));
    const auto moved = platform.files.rename(item, beside);
    if (moved) return *moved ? std::optional(beside) : std::nullopt;
    // The rename itself tells that a name is taken, so that nothing that appears meanwhile is replaced.
    if (moved.error().code != CocoaErrorCode::fileWriteFileExists) return std::nullopt;
  }
}

/// The Finder uses the colon as a separator, so a file name must not contain one.
std::string timestamp(Moment moment) {
  std::string text = DateText::iso8601(moment);
  std::erase(text, ':');
  return text;
}

}  // namespace

// In the same folder as the item, so that a rename is enough even if the volume is full.
Path FileStash::folderBeside(const Path& item) {
  return item.parent().appending(folderName);
}

std::optional<Path> FileStash::moveAside(Platform& platform, const Path& item, const std::string& reason) {
  if (!platform.files.exists(item) && !platform.files.isSymbolicLink(item)) return std::nullopt;
  return moveToTrashOrBeside(platform, item, "-" + reason + "-" + timestamp(platform.clock.now()));
}

void MoverStasher::stash(Platform& platform, const Path& item) {
  if (!platform.files.exists(item)) return;
  const auto seconds = DateText::secondsSince1970(platform.clock.now());
  moveToTrashOrBeside(platform, item, "-" + std::to_string(seconds));
}

}  // namespace quarn
