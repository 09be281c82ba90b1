#include "QuarnCore/foundation/FileStash.h"

#include <algorithm>

#include "Platform/DateText.h"
#include "QuarnCore/foundation/TrashOrBeside.h"

namespace quarn::FileStash {
namespace {

bool isLink(Platform& platform, const Path& item) {
  const auto attributes = platform.files.attributes(item);
  return attributes && attributes->kind == FileKind::symbolicLink;
}

/// A colon is a separator to the Finder, so a file name has none.
std::string timestamp(Moment moment) {
  std::string text = DateText::iso8601(moment);
  std::erase(text, ':');
  return text;
}

}  // namespace

void moveAside(Platform& platform, const Path& item, const std::string& reason) {
  if (!platform.files.exists(item)) return;
  TrashOrBeside::put(platform, item,
                     item.lastComponent() + "-" + reason + "-" + timestamp(platform.clock.now()));
}

}  // namespace quarn::FileStash
