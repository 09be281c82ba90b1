#pragma once

#include <map>

#include "QuarnCore/health/HealthReport.h"

namespace quarn {

/// The space that the findings of a report take, in bytes. Nothing is measured again. Two findings may count
/// the same bytes.
class HealthSpace {
 public:
  explicit HealthSpace(const HealthReport& report);

  /// The sum for each kind that was found, by the kind's raw value.
  std::map<std::string, std::int64_t> byName() const;
  /// 0 for a kind that wasn't found. That of reverted applications adds copies on the drive to bundles on the
  /// internal disk whose copy is gone.
  std::int64_t of(HealthIssue::Kind kind) const;
  /// What moved applications take on the drives: those that work and those that nothing leads to.
  std::int64_t total() const;
  /// The largest applications that work, at most `count`. Those of equal size keep the order of the report.
  std::vector<HealthIssue> largestHealthy(std::size_t count) const;

 private:
  const HealthReport& report_;
  std::map<HealthIssue::Kind, std::int64_t> byKind_;
};

}  // namespace quarn
