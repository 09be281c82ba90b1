#pragma once

#include <functional>
#include <optional>
#include <set>
#include <string>

#include "Platform/Platform.h"
#include "QuarnCore/uninstall/AppUninstallPlanner.h"
#include "QuarnCore/uninstall/AppUninstallSession.h"

namespace quarn {

/// Receives the steps of an uninstall, each after it was tried, as a line of fields that are separated by
/// tabs. The first field is the word of the step.
struct AppUninstallReporter {
  std::function<void(const std::string& line)> log = [](const std::string&) {};

  static AppUninstallReporter silent() { return {}; }
};

/// Carries out plans of `AppUninstallPlanner`. What goes is what the selection takes, or, if `selectedPaths`
/// is given, exactly the candidates with these paths. Both throw `AppUninstallError`, before anything is
/// touched, for a part of the system, for what isn't an application, and for an application with a volume
/// mounted inside.
namespace AppUninstallRunner {

/// Moves each item to the Trash of its volume, or else into a folder beside it, forgets receipts, and records
/// what was done. The record is there from the first step on, so that it tells of a run that was killed,
/// too: its last item is then the one that was under way. An item that must not go by now stays, as does one
/// with a volume mounted inside. Throws if the record can't be written in the end; the items are in the Trash
/// then. `dryRun` does what `rehearse` does.
AppUninstallSession run(Platform& platform, const AppUninstallPlan& plan, const UninstallSelection& selection,
                        bool dryRun, const std::optional<std::set<std::string>>& selectedPaths,
                        const AppUninstallReporter& reporter);

/// Reports what would be done. Records nothing.
AppUninstallSession rehearse(const ReadOnlyPlatform& platform, const AppUninstallPlan& plan,
                             const UninstallSelection& selection,
                             const std::optional<std::set<std::string>>& selectedPaths,
                             const AppUninstallReporter& reporter);

}  // namespace AppUninstallRunner
}  // namespace quarn
