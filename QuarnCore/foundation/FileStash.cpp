#include "QuarnCore/foundation/FileStash.h"

#include "Platform/DateText.h"

namespace quarn {
namespace {

std::optional<Path> moveToTrashOrBeside(Platform& platform, const Path& item, const std::string& nameBeside) {
  if (auto inTrash = platform.trash.moveToTrash(item).asOptional()) return inTrash;
  const Path folder = FileStash::folderBeside(item);
  platform.files.createFolder(folder).orIgnore();
  const Path beside = folder.appending(nameBeside);
  return platform.files.rename(item, beside).valueOr(false) ? std::optional(beside) : std::nullopt;
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
  return moveToTrashOrBeside(platform, item,
                             item.lastComponent() + "-" + reason + "-" + timestamp(platform.clock.now()));
}

void MoverStasher::stash(Platform& platform, const Path& item) {
  if (!platform.files.exists(item)) return;
  const auto seconds = DateText::secondsSince1970(platform.clock.now());
  moveToTrashOrBeside(platform, item, item.lastComponent() + "-" + std::to_string(seconds));
}

}  // namespace quarn
