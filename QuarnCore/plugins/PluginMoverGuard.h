#pragma once

#include "Platform/Platform.h"
#include "QuarnCore/move/ChosenVolume.h"
#include "QuarnCore/plugins/InstalledPlugin.h"
#include "QuarnCore/plugins/PluginGuard.h"

/// What keeps an installed plug-in as it is, beside what `PluginGuard` knows. Only looks. All that is called
/// "require" throws `MoveRefused`, or the error that was met, before anything is touched.
namespace quarn::PluginMoverGuard {

/// Throws unless a native plug-in can be replaced by a link to its copy on a drive. A copy that is there
/// already must not be the only one of another plug-in, or the only whole one of this.
void requireMovable(const ReadOnlyPlatform& platform, const InstalledPlugin& plugin,
                    const PluginPlaces& places, const Path& drive);

/// Throws unless a link can be replaced by a copy of the plug-in that it leads to. Returns the volume of
/// that.
ChosenVolume requireRestorable(const ReadOnlyPlatform& platform, const InstalledPlugin& plugin);

/// Throws unless removing what stands in the system's folder removes that alone.
void requireRemovable(const ReadOnlyPlatform& platform, const InstalledPlugin& plugin);

/// Returns whether what a link leads to may go together with the link: it is a folder at the very path where
/// a mounted drive holds a plug-in of this name, no further link is on the way there, no other link leads to
/// it, and no volume is mounted inside.
bool isOwnCopy(const ReadOnlyPlatform& platform, const InstalledPlugin& plugin);

}  // namespace quarn::PluginMoverGuard
