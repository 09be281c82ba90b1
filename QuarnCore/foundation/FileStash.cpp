#include "QuarnCore/foundation/FileStash.h"

#include "Platform/DateText.h"

namespace quarn {
namespace {

void moveToTrashOrBeside(Platform& platform, const Path& item, const std::string& nameBeside) {
  if (platform.trash.moveToTrash(item)) return;
  const Path folder = item.parent().appending(".QuarnTrash");
  platform.files.createFolder(folder).orIgnore();
  platform.files.rename(item, folder.appending(nameBeside)).orIgnore();
}

/// A colon is a separator to the Finder, so a file name has none.
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
