#include "QuarnCore/health/HealthSpace.h"

#include <algorithm>
#include <iterator>

namespace quarn {

using Kind = HealthIssue::Kind;

HealthSpace::HealthSpace(const HealthReport& report) : report_(report) {
  for (const HealthIssue& issue : report.issues) byKind_[issue.kind] += issue.sizeBytes;
}

std::map<std::string, std::int64_t> HealthSpace::byName() const {
  std::map<std::string, std::int64_t> sums;
  for (const auto& [kind, bytes] : byKind_) sums.emplace(rawValue(kind), bytes);
  return sums;
}

std::int64_t HealthSpace::of(Kind kind) const {
  const auto found = byKind_.find(kind);
  return found == byKind_.end() ? 0 : found->second;
}

std::int64_t HealthSpace::total() const {
  return of(Kind::healthy) + of(Kind::orphan);
}

std::vector<HealthIssue> HealthSpace::largestHealthy(std::size_t count) const {
  std::vector<HealthIssue> healthy;
  std::copy_if(report_.issues.begin(), report_.issues.end(), std::back_inserter(healthy),
               [](const HealthIssue& issue) { return issue.kind == Kind::healthy; });
  std::stable_sort(healthy.begin(), healthy.end(),
                   [](const HealthIssue& a, const HealthIssue& b) { return a.sizeBytes > b.sizeBytes; });
  healthy.resize(std::min(count, healthy.size()));
  return healthy;
}

}  // namespace quarn
