#pragma once

#include "Platform/Platform.h"

namespace quarn::Homecoming {

/// Brings what a link, or a launcher, at `place` leads to back to that place. Looks first whether all of it
/// can come, so that a refusal changes nothing. Throws. A link that has been removed stays away when the
/// move fails after that; a launcher is put back.
void bringHome(Platform& platform, const Path& place);

}  // namespace quarn::Homecoming
