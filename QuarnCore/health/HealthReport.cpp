#include "QuarnCore/health/HealthReport.h"

#include <algorithm>
#include <iterator>

namespace quarn {

std::vector<HealthIssue> HealthReport::problems() const {
  std::vector<HealthIssue> found;
  std::copy_if(issues.begin(), issues.end(), std::back_inserter(found),
               [](const HealthIssue& issue) { return issue.kind != HealthIssue::Kind::healthy; });
  return found;
}

std::map<HealthIssue::Kind, std::vector<HealthIssue>> HealthReport::grouped() const {
  std::map<HealthIssue::Kind, std::vector<HealthIssue>> groups;
  for (const HealthIssue& issue : issues) groups[issue.kind].push_back(issue);
  return groups;
}

}  // namespace quarn
