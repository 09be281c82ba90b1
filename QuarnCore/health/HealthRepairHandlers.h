#pragma once

#include <optional>
#include <string>

#include "Platform/Platform.h"
#include "QuarnCore/health/HealthIssue.h"
#include "QuarnCore/health/HealthRepairRun.h"

/// One repair for each kind of problem. `action` names it before anybody is asked; `handle` carries it out
/// and says so. The closing line is said even if a step failed, unless the handler says otherwise; nothing
/// throws.
namespace quarn {

namespace HealthRepairDanglingHandler {
/// Returns where the target went when the folder for moved items was renamed, if it is there.
std::optional<Path> candidate(const ReadOnlyPlatform& platform, const HealthIssue& issue);
std::string action(const std::optional<Path>& candidate);
/// Makes the link lead to the candidate that was shown, or removes it if there was none. If the candidate has
/// gone since, the link stays.
void handle(HealthRepairRun& run, const HealthIssue& issue, const std::optional<Path>& candidate);
}  // namespace HealthRepairDanglingHandler

namespace HealthRepairEmptyHandler {
std::string action(const HealthIssue& issue);
void handle(HealthRepairRun& run, const HealthIssue& issue);
}  // namespace HealthRepairEmptyHandler

namespace HealthRepairRevertHandler {
std::string reclaimAction(const HealthIssue& issue);
void handleReclaim(HealthRepairRun& run, const HealthIssue& issue);
std::string reSymlinkAction(const HealthIssue& issue);
/// Says why if the application couldn't be moved.
void handleReSymlink(HealthRepairRun& run, const HealthIssue& issue);
}  // namespace HealthRepairRevertHandler

namespace HealthRepairOrphanHandler {
std::string action(const HealthIssue& issue);
void handle(HealthRepairRun& run, const HealthIssue& issue);
}  // namespace HealthRepairOrphanHandler

namespace HealthRepairMissingTrackedFilesHandler {
std::string action(const HealthIssue& issue);
void handle(HealthRepairRun& run, const HealthIssue& issue);
}  // namespace HealthRepairMissingTrackedFilesHandler

namespace HealthRepairSpotlightLaunchersHandler {
std::string action(const HealthIssue& issue);
void handle(HealthRepairRun& run, const HealthIssue& issue);
}  // namespace HealthRepairSpotlightLaunchersHandler

namespace HealthRepairUnsafePrefsHandler {
std::string action(const HealthIssue& issue);
/// Says why if the file couldn't be brought back, and how it can be if the rights were missing.
void handle(HealthRepairRun& run, const HealthIssue& issue);
}  // namespace HealthRepairUnsafePrefsHandler

}  // namespace quarn
