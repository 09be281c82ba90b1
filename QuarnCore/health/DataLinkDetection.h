#pragma once

#include <optional>
#include <vector>

#include "Platform/Platform.h"
#include "QuarnCore/health/HealthIssue.h"

/// Looks in the library folders for links that are broken or that the system doesn't tolerate. Only the disk
/// is asked. Nothing here throws; what can't be read is skipped. Findings keep the order in which the disk
/// gave the items.
namespace quarn {

/// The folder of moved items on a drive once had another name, and old links may still lead below it.
namespace StaleRootRetarget {

/// Returns the path with the former name replaced by today's, if it contains the former one and something
/// exists at the new path. Follows links.
std::optional<Path> candidate(const ReadOnlyPlatform& platform, const Path& path);

}  // namespace StaleRootRetarget

/// Finds links to nothing in the user's folders of application data. Sees items up to three folders below
/// each of them and lists no folder that is deeper: these folders can contain millions of files.
namespace DanglingDataLinkDetector {
std::vector<HealthIssue> detect(const ReadOnlyPlatform& platform);
}  // namespace DanglingDataLinkDetector

/// Finds preferences files that are links, whether they lead anywhere or not: the preferences daemon writes a
/// file of its own in their place.
namespace UnsafePrefsPlistDetector {
/// Looks at the preferences of the system and the user, and below each home folder of `extraHomes`. A
/// relative text of a link gives a target in the current folder, not in that of the link.
std::vector<HealthIssue> detect(const ReadOnlyPlatform& platform, const std::vector<Path>& extraHomes);
}  // namespace UnsafePrefsPlistDetector

/// Finds links from the folders of sandboxed applications to a path below /Volumes, which a sandbox may not
/// read. Only the text of the link counts; its target needn't exist.
namespace SandboxExternalSymlinkDetector {
std::vector<HealthIssue> detect(const ReadOnlyPlatform& platform);
}  // namespace SandboxExternalSymlinkDetector

}  // namespace quarn
