#include "QuarnCore/foundation/TimedFolder.h"

#include <chrono>

#include "Platform/DateText.h"

namespace quarn {

Result<std::string> TimedFolder::make(Platform& platform, const Path& parent) {
  using namespace std::chrono_literals;
  constexpr int attempts = 3;
  if (const auto parents = platform.files.createFolder(parent); !parents) return parents.error();
  for (int i = 1;; ++i) {
    const std::string name = DateText::compactLocal(platform.clock.now());
    const Path folder = parent.appending(name);
    const auto claimed = platform.files.claim(folder, FileKind::folder);
    if (claimed) return name;
    if (i == attempts || !platform.files.attributes(folder)) return claimed.error();
    const auto sinceSecond = platform.clock.now().time_since_epoch() % 1s;
    platform.clock.sleep(1s - std::chrono::duration_cast<std::chrono::milliseconds>(sinceSecond));
  }
}

}  // namespace quarn
