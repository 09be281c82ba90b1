#pragma once

#include <optional>

#include "Platform/Platform.h"
#include "QuarnCore/foundation/RawValues.h"

namespace quarn {

/// The kinds of source that can be installed from.
enum class InstallerKind { app, dmg, zip, pkg, mpkg, script, unknown };

template <>
inline constexpr auto rawValueRows<InstallerKind> = std::to_array<RawValueRow<InstallerKind>>({
    {InstallerKind::app, "app"},
    {InstallerKind::dmg, "dmg"},
    {InstallerKind::zip, "zip"},
    {InstallerKind::pkg, "pkg"},
    {InstallerKind::mpkg, "mpkg"},
    {InstallerKind::script, "script"},
    {InstallerKind::unknown, "unknown"},
});

namespace InstallerKinds {
/// Returns the kind by the extension of the path, in any letter case; otherwise `script` for a file that
/// begins with "#!", and `unknown` for everything else. With a known extension the disk isn't looked at, so
/// the item may even be missing.
InstallerKind detect(const ReadOnlyPlatform& platform, const Path& source);
/// Does the same by the extension alone; nothing for any other extension.
std::optional<InstallerKind> ofExtension(const Path& source);
/// Returns whether something stands at the path, or where its link leads, that is neither a file nor a
/// folder. Whatever its extension says, nothing can be installed from it, and a tool could wait at it for
/// ever.
bool isSpecial(const ReadOnlyPlatform& platform, const Path& source);
}  // namespace InstallerKinds

namespace ContentKindSniffer {
/// Returns `script` if the first 256 bytes of a file are UTF-8 and begin with "#!", whichever interpreter
/// they name. Otherwise returns nothing, also for a file that can't be read, and where the 256th byte is in
/// the middle of a character. Never waits: a FIFO isn't opened for reading.
std::optional<InstallerKind> sniff(const ReadOnlyPlatform& platform, const Path& file);
}  // namespace ContentKindSniffer

}  // namespace quarn
