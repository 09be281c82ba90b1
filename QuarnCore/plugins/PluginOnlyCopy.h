#pragma once

#include <vector>

#include "Platform/Platform.h"
#include "QuarnCore/move/MoverError.h"
#include "QuarnCore/plugins/PluginBundle.h"
#include "QuarnCore/plugins/PluginGuard.h"

/// Keeps the only copy of a plug-in from being replaced by another version of it, such as an older one that
/// its owner has put aside in a folder below. Only looks.
namespace quarn::PluginOnlyCopy {

/// Returns, for each bundle, whether another one stands where it would be linked to. Which of the two comes
/// first doesn't matter, nor whether that one is installed in the end. To be asked before anything is done.
std::vector<bool> displaced(const ReadOnlyPlatform& platform, const std::vector<PluginBundle>& bundles);

/// What is said of an item that another one doesn't replace.
MoveRefused refusal(const Path& kept, const Path& source);

/// Throws `MoveRefused` if a source in one of the system's folders of plug-ins, but not where hosts look for
/// it, would replace a copy on the drive that may have come from there: the link leads to that copy, or is
/// missing, as after a run that was killed.
void requireSafe(const ReadOnlyPlatform& platform, const PluginPlaces& places);

}  // namespace quarn::PluginOnlyCopy
