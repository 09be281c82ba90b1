#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "Platform/Platform.h"
#include "QuarnCore/uninstall/AppRecord.h"
#include "QuarnCore/uninstall/UninstallCandidate.h"
#include "QuarnCore/uninstall/UninstallSelection.h"

namespace quarn {

/// What uninstalling an application could take. It holds everything that was found; what of it goes is worked
/// out again from the selection. Sizes are in bytes.
struct AppUninstallPlan {
  using Group = std::pair<UninstallCategory, std::vector<UninstallCandidate>>;

  AppRecord app;
  std::vector<UninstallCandidate> candidates;
  std::vector<std::string> warnings;  ///< to be read before anything is touched
  std::int64_t totalBytes = 0;        ///< of all candidates
  std::int64_t selectedBytes = 0;     ///< of those that the selection takes

  /// Returns the categories that have candidates, in their order.
  std::vector<Group> grouped() const;

  bool operator==(const AppUninstallPlan&) const = default;
};

namespace AppUninstallPlanner {
/// Asks `pkgutil` and `mdutil`, without a limit of time. Never throws, not even for a part of the system:
/// only a run refuses that.
AppUninstallPlan plan(const ReadOnlyPlatform& platform, const AppRecord& app,
                      const UninstallSelection& selection);

/// Returns whether a run takes a candidate.
bool effectiveSelected(const UninstallCandidate& candidate, const AppRecord& app,
                       const UninstallSelection& selection);
}  // namespace AppUninstallPlanner

}  // namespace quarn
