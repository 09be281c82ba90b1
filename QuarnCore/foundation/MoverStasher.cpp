#include "QuarnCore/foundation/MoverStasher.h"

#include "Platform/DateText.h"
#include "QuarnCore/foundation/TrashOrBeside.h"

namespace quarn::MoverStasher {

void stash(Platform& platform, const Path& item) {
  if (!platform.files.exists(item)) return;
  const auto seconds = DateText::secondsSince1970(platform.clock.now());
  TrashOrBeside::put(platform, item, item.lastComponent() + "-" + std::to_string(seconds));
}

}  // namespace quarn::MoverStasher
