#pragma once

#include <optional>
#include <set>
#include <string>

#include "Platform/Platform.h"
#include "QuarnCore/uninstall/AppUninstallPlanner.h"
#include "QuarnCore/uninstall/AppUninstallReporter.h"

namespace quarn {

/// Carries out plans of `AppUninstallPlanner`. What goes is what the selection takes, or, if `selectedPaths`
/// is given, exactly the candidates with these paths. Both throw `AppUninstallError`, before anything is
/// touched, for a part of the system, for what isn't an application, and for an application with a volume
/// mounted inside.
namespace AppUninstallRunner {

/// Moves each item to the Trash of its volume, or else into a folder beside it, forgets receipts, and records
/// what was done. The record is there from the first step on, so that it tells of a run that was killed,
/// too: its last item is then the one that was under way. An item that must not go by now stays, as does one
/// with a volume mounted inside, and a folder with the copy on a drive in it unless that is to go, too.
/// Throws if the record can't be written in the end; the items are in the Trash then. `dryRun` does what
/// `rehearse` does.
AppUninstallSession run(Platform& platform, const AppUninstallPlan& plan, const UninstallSelection& selection,
                        bool dryRun, const std::optional<std::set<std::string>>& selectedPaths,
                        const AppUninstallReporter& reporter);

/// Reports what would be done, with what would stay. Records nothing.
AppUninstallSession rehearse(const ReadOnlyPlatform& platform, const AppUninstallPlan& plan,
                             const UninstallSelection& selection,
                             const std::optional<std::set<std::string>>& selectedPaths,
                             const AppUninstallReporter& reporter);

}  // namespace AppUninstallRunner
}  // namespace quarn
