#pragma once

#include <functional>
#include <string>

#include "Platform/Platform.h"
#include "QuarnCore/health/HealthReport.h"

namespace quarn {

/// What happens to an application that an updater put back on the internal disk.
enum class RevertedChoice {
  none,       ///< it is only shown
  reclaim,    ///< the copy on the drive goes to the Trash
  reSymlink,  ///< the copy on the drive goes to the Trash, and the application moves there again
};

/// Who is shown each repair, decides on it, and is told what was done.
struct HealthRepairDialog {
  std::function<void(const HealthIssue&, const std::string& action)> describe;
  std::function<bool()> shouldProceed;
  std::function<void(const std::string& line)> say;
};

/// The repair of each problem of a report, kind after kind. The report counts as it was taken: nothing that a
/// repair brings about is found in between. Right before something goes, it is looked at once more, and stays
/// if it isn't as it was found, or if that can't be seen. No failure ends the run. What has value goes to the
/// Trash and is never deleted.
namespace HealthRepair {

/// Shows every repair. `dialog.shouldProceed` is asked, but nothing is changed whatever it answers.
void rehearse(const ReadOnlyPlatform& platform, const HealthReport& report, RevertedChoice reverted,
              const HealthRepairDialog& dialog);

/// Shows every repair, and carries out those that `dialog.shouldProceed` agrees to. The caller has held the
/// `Turn` since before the report was taken, so that no other run changes what it says.
void carryOut(Platform& platform, const HealthReport& report, RevertedChoice reverted,
              const HealthRepairDialog& dialog);

}  // namespace HealthRepair
}  // namespace quarn
