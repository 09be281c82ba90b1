#pragma once

#include <functional>
#include <string>
#include <vector>

#include "Platform/Platform.h"
#include "QuarnCore/foundation/RawValues.h"
#include "QuarnCore/plugins/InstalledPlugin.h"

namespace quarn {

/// Moves plug-ins out of the system's folders to a drive, brings them back and removes them, one after
/// another, under the `Turn`. None of these throws: what fails or is refused has its report, and the next one
/// is tried. A refusal comes before anything is touched: the plug-in isn't any more what its record says, a
/// removal would take something else along, or what it relies on isn't known for certain.
namespace PluginMover {

struct MoveReport {
  enum class Outcome { moved, restored, removed, skipped, failed };

  InstalledPlugin plugin;  ///< as it was before
  Outcome outcome = Outcome::failed;
  std::string message;

  bool operator==(const MoveReport&) const = default;
};

using Log = std::function<void(const std::string& line)>;

/// Copies native plug-ins to a drive and replaces each by a link, once its copy has been written out and
/// compared and is still on the drive. A copy that is there already is removed before, unless another link
/// leads to it or the plug-in looks like an unfinished copy of it. A failure after the removal from the
/// system's folder leaves the plug-in only on the drive, without a link.
std::vector<MoveReport> moveToExternal(Platform& platform, const std::vector<InstalledPlugin>& plugins,
                                       const Path& drive, const Log& log);

/// Replaces the links to plug-ins by copies, made with the rights of the user. What the link led to goes once
/// the copy has been written out and compared, but only from where `moveToExternal` puts a plug-in of this
/// name on a drive that is mounted, and if nothing else leads to it; everything else stays. A failure after
/// the removal of the link leaves that copy whole, and possibly part of a new one where the link was.
std::vector<MoveReport> restoreToSystem(Platform& platform, const std::vector<InstalledPlugin>& plugins,
                                        const Log& log);

/// Removes plug-ins, real bundles too, for good. With `removeExternalData` also what a link leads to, by the
/// rule of `restoreToSystem`.
std::vector<MoveReport> remove(Platform& platform, const std::vector<InstalledPlugin>& plugins,
                               bool removeExternalData, const Log& log);

}  // namespace PluginMover

template <>
inline constexpr auto rawValueRows<PluginMover::MoveReport::Outcome> =
    std::to_array<RawValueRow<PluginMover::MoveReport::Outcome>>({
        {PluginMover::MoveReport::Outcome::moved, "moved"},
        {PluginMover::MoveReport::Outcome::restored, "restored"},
        {PluginMover::MoveReport::Outcome::removed, "removed"},
        {PluginMover::MoveReport::Outcome::skipped, "skipped"},
        {PluginMover::MoveReport::Outcome::failed, "failed"},
    });

}  // namespace quarn
