#pragma once

#include <string>

#include "QuarnCore/health/HealthRepair.h"

namespace quarn {

/// What the command was told.
struct HealthRepairArgs {
  bool dryRun = false;  ///< nothing is changed; counts more than `yes`
  bool yes = false;     ///< every repair goes ahead without a question
  bool reSymlinkReverted = false;
  bool reclaimReverted = false;
  bool noSnapshot = false;
  // One for each kind of repair. They are accepted, and nothing depends on them: the answers alone decide.
  bool removeOrphans = false;
  bool removeEmpty = false;
  bool removeDangling = false;
  bool forgetMissingTrackedFiles = false;
  bool repairSpotlightLaunchers = false;
  bool restoreUnsafePrefs = false;
};

/// Shows each repair and asks whether to carry it out.
struct HealthRepairPrompt {
  HealthRepairArgs args;

  void describe(const HealthIssue& issue, const std::string& action) const;
  /// Any answer that begins with "y" or "Y" agrees; the end of input doesn't.
  bool shouldProceed() const;

  /// These two, for the repairs. It must not outlive the prompt.
  HealthRepairDialog dialog() const;
};

}  // namespace quarn
