#include "QuarnCore/health/HealthRepairRun.h"

#include "QuarnCore/foundation/AppStorageNames.h"
#include "QuarnCore/health/HealthRepairGuard.h"

namespace quarn {

Path HealthRepairRun::destinationOf(const HealthIssue& issue) {
  const std::string name = issue.location.lastComponent();
  if (issue.target) return issue.target->parent().appending(name);
  return AppStorageNames::appsRoot(Path("/Volumes/Crucial X9")).appending(name);
}

HealthRepairRun::HealthRepairRun(Platform& whole, const HealthReport& whatWasFound,
                                 const std::function<void(const std::string& line)>& whoIsTold)
    : platform(whole), report(whatWasFound), say(whoIsTold), trash(whole, whatWasFound, whoIsTold) {
  for (const HealthIssue& issue : report.issues) {
    if (issue.kind != HealthIssue::Kind::reverted) continue;
    const Path destination = destinationOf(issue);
    const auto drive = HealthRepairGuard::driveOf(platform, destination);
    // The folder on the drive needn't exist, but the drive has to be there.
    destinations.emplace(destination.text(),
                         JobRunner::begin(platform, drive.value_or(destination.parent()), false));
  }
}

}  // namespace quarn
