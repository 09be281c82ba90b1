#include "QuarnCore/installer/Gantrix.h"

namespace quarn::Gantrix {

Path path(const ReadOnlyPlatform& platform) {
  const Path installed("/usr/local/bin/gantrix");
  return platform.files.exists(installed) ? installed
                                          : platform.places.home().appending(".codex/skills/gantrix/gantrix");
}

}  // namespace quarn::Gantrix
