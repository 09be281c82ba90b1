#include "QuarnCore/foundation/Turn.h"

namespace quarn {

// The home folder: it is there before the first run, it belongs to the person whose runs meet, and locks work
// there. On a drive they may not: SMB refuses to lock a folder, and NFS only pretends to.
Turn::Turn(Platform& platform, const std::function<void()>& waiting)
    : lock_(platform.locks
                .lock(platform.places.home(),
                      [&] {
                        hadToWait_ = true;
                        waiting();
                      })
                .valueOr(nullptr)) {}

}  // namespace quarn
