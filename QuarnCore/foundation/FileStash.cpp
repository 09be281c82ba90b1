#include "QuarnCore/foundation/FileStash.h"

#include "Platform/DateText.h"

namespace quarn {
namespace {

void moveToTrashOrBeside(Platform& platform, const Path& item, const std::string& nameBeside) {
  if (platform.trash.moveToTrash(item)) return;
  // In the same folder as the item, so that a rename is enough even if the volume is full.
  const Path folder = item.parent().appending(".QuarnTrash");
  platform.files.createFolder(folder).orIgnore();
  platform.files.rename(item, folder.appending(nameBeside)).orIgnore();
}

/// The Finder uses the colon as a separator, so a file name must not contain one.
std::string timestamp(Moment moment) {
  std::string text = DateText::iso8601(moment);
  std::erase(text, ':');
  return text;
}

}  // namespace

void FileStash::moveAside(Platform& platform, const Path& item, const std::string& reason) {
  if (!platform.files.exists(item) && !platform.files.isSymbolicLink(item)) return;
  moveToTrashOrBeside(platform, item,
                      item.lastComponent() + "-" + reason + "-" + timestamp(platform.clock.now()));
}

void MoverStasher::stash(Platform& platform, const Path& item) {
  if (!platform.files.exists(item)) return;
  const auto seconds = DateText::secondsSince1970(platform.clock.now());
  moveToTrashOrBeside(platform, item, item.lastComponent() + "-" + std::to_string(seconds));
}

}  // namespace quarn
