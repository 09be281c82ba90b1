#pragma once

#include <string>

#include "QuarnCore/health/HealthRepair.h"

namespace quarn {

/// Shows each repair and asks whether to carry it out.
struct HealthRepairPrompt {
  bool dryRun = false;  ///< says that each repair is skipped; counts more than `yes`
  bool yes = false;     ///< agrees without asking

  void describe(const HealthIssue& issue, const std::string& action) const;
  /// Any answer that begins with "y" or "Y" agrees; the end of input doesn't.
  bool shouldProceed() const;

  /// These two, for the repairs. It must not outlive the prompt.
  HealthRepairDialog dialog() const;
};

}  // namespace quarn
