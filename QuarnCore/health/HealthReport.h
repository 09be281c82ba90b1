#pragma once

#include <map>
#include <vector>

#include "Platform/Clock.h"
#include "QuarnCore/health/HealthIssue.h"

namespace quarn {

/// What a health check found. `healthyCount` and the problems don't add up to anything: a link can be healthy
/// and still have a problem of another kind.
struct HealthReport {
  std::vector<HealthIssue> issues;  ///< all findings, in the order of the checks
  int healthyCount = 0;             ///< links that lead to a complete bundle
  int scannedSymlinks = 0;
  std::vector<Path> scannedDrives;  ///< the folders of moved applications that were looked at
  Moment scannedAt;                 ///< when the check was done

  /// Everything that isn't healthy, in the order of `issues`.
  std::vector<HealthIssue> problems() const;
  /// The issues by kind, each list in the order of `issues`.
  std::map<HealthIssue::Kind, std::vector<HealthIssue>> grouped() const;
};

}  // namespace quarn
