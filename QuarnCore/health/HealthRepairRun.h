#pragma once

#include <functional>
#include <map>
#include <string>

#include "Platform/Platform.h"
#include "QuarnCore/health/HealthRepairTrash.h"
#include "QuarnCore/health/HealthReport.h"
#include "QuarnCore/move/JobRunner.h"

namespace quarn {

/// What the repairs of one run share.
struct HealthRepairRun {
  HealthRepairRun(Platform& whole, const HealthReport& whatWasFound,
                  const std::function<void(const std::string& line)>& whoIsTold);

  /// Where a reverted application goes. One that has no copy goes to the drive that this tool was first made
  /// for.
  static Path destinationOf(const HealthIssue& issue);

  Platform& platform;
  const HealthReport& report;
  std::function<void(const std::string& line)> say;
  HealthRepairTrash trash;
  /// The drives to which reverted applications move again, as they were when the report was taken, by
  /// destination.
  std::map<std::string, JobRunner::Run> destinations;
};

}  // namespace quarn
