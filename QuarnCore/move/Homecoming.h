#pragma once

#include "Platform/Platform.h"

namespace quarn::Homecoming {

/// Moves what the link or launcher at `place` leads to back to that path. First checks whether all of it can
/// be moved, so that a refusal changes nothing. Throws. If the move fails later, a removed link isn't
/// restored, but a launcher is put back.
void bringHome(Platform& platform, const Path& place);

}  // namespace quarn::Homecoming
