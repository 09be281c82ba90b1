#pragma once

#include "QuarnCore/plugins/PluginGuard.h"

namespace quarn::PluginReplacement {

/// Throws if removing the copy that is on the drive already could leave less than there is: the source can't
/// be read, there wouldn't be room for it, or it stands at the link's place and is less than the copy: it
/// lacks something that the copy has, as when a run was killed while it removed the source, or one of its
/// files is only the start of that in the copy, as when a copy back was cut off.
void requirePossible(const ReadOnlyPlatform& platform, const PluginPlaces& places);

}  // namespace quarn::PluginReplacement
