#include "QuarnCore/foundation/Turn.h"

namespace quarn {

// The home folder is locked because it exists before the first run, belongs to the user whose runs may meet,
// and supports locks. A drive may not: SMB refuses to lock a folder, and NFS only pretends to.
Turn::Turn(Platform& platform, const std::function<void()>& waiting)
    : lock_(platform.locks
                .lock(platform.places.home(),
                      [&] {
                        hadToWait_ = true;
                        waiting();
                      })
                .valueOr(nullptr)) {}

}  // namespace quarn
