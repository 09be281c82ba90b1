#pragma once

#include "Platform/Platform.h"

namespace quarn {

/// Where everything is for one plug-in.
struct PluginPlaces {
  Path source;    ///< what is copied; may be a link to a folder
  Path external;  ///< its copy on the drive
  Path link;      ///< where hosts look for it
};

/// What keeps a plug-in where it is. Only looks. All of it throws `MoveRefused`, or the error that was met,
/// before anything is touched.
namespace PluginGuard {

/// Throws unless the source is a folder, the copy will lie on the drive, and replacing what stands at the
/// other two places removes nothing else: neither may lie in the other or in the source, nor the source in
/// one of them, by whatever spelling or link; and no volume is mounted inside any of the three. The source
/// may stand at the link's place itself.
void requireApart(const ReadOnlyPlatform& platform, const PluginPlaces& places, const Path& drive);

/// Throws if what `kept` leads to is `gone` or lies in it, or if that can't be told. A link at `gone` holds
/// nothing. Goes by the identities of the folders around, as they are now, and so depends on no earlier look:
/// for the moment right before `gone` is removed.
void requireOutlives(const ReadOnlyPlatform& platform, const Path& kept, const Path& gone);

/// Returns whether the source is what stands at the link's place, by whatever spelling, and not just a link
/// there. Throws if that can't be told.
bool isSourceAtLink(const ReadOnlyPlatform& platform, const PluginPlaces& places);

}  // namespace PluginGuard
}  // namespace quarn
