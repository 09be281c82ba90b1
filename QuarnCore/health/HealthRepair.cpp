#include "QuarnCore/health/HealthRepair.h"

#include <algorithm>
#include <vector>

#include "QuarnCore/health/HealthRepairHandlers.h"

namespace quarn::HealthRepair {
namespace {

using Kind = HealthIssue::Kind;

/// The kinds that are gone through together. A pass without a handler only shows them.
struct Pass {
  std::vector<Kind> kinds;
  std::string (*action)(const ReadOnlyPlatform&, const HealthIssue&);
  void (*handle)(HealthRepairRun&, const HealthIssue&);
};

std::string choiceIsNeeded(const ReadOnlyPlatform&, const HealthIssue&) {
  return "needs --reclaim-reverted (delete SSD copy) or --re-symlink-reverted (re-move). Skipping.";
}

Pass revertedPass(RevertedChoice choice) {
  namespace Handler = HealthRepairRevertHandler;
  if (choice == RevertedChoice::reclaim)
    return {{Kind::reverted}, Handler::reclaimAction, Handler::handleReclaim};
  if (choice == RevertedChoice::reSymlink)
    return {{Kind::reverted}, Handler::reSymlinkAction, Handler::handleReSymlink};
  return {{Kind::reverted}, choiceIsNeeded, nullptr};
}

std::vector<Pass> passes(RevertedChoice reverted) {
  return {
      {{Kind::dangling}, HealthRepairDanglingHandler::action, HealthRepairDanglingHandler::handle},
      {{Kind::empty, Kind::corrupted}, HealthRepairEmptyHandler::action, HealthRepairEmptyHandler::handle},
      revertedPass(reverted),
      {{Kind::orphan}, HealthRepairOrphanHandler::action, HealthRepairOrphanHandler::handle},
      {{Kind::missingTrackedFiles},
       HealthRepairMissingTrackedFilesHandler::action,
       HealthRepairMissingTrackedFilesHandler::handle},
      {{Kind::missingSpotlightLaunchers},
       HealthRepairSpotlightLaunchersHandler::action,
       HealthRepairSpotlightLaunchersHandler::handle},
      {{Kind::unsafePrefsPlist},
       HealthRepairUnsafePrefsHandler::action,
       HealthRepairUnsafePrefsHandler::handle},
  };
}

bool isOf(const Pass& pass, const HealthIssue& issue) {
  return std::find(pass.kinds.begin(), pass.kinds.end(), issue.kind) != pass.kinds.end();
}

/// Shows every repair, and hands those that are agreed to to `act`.
void goThrough(const ReadOnlyPlatform& platform, const HealthReport& report, RevertedChoice reverted,
               const HealthRepairDialog& dialog,
               const std::function<void(const Pass&, const HealthIssue&)>& act) {
  for (const Pass& pass : passes(reverted)) {
    for (const HealthIssue& issue : report.issues) {
      if (!isOf(pass, issue)) continue;
      dialog.describe(issue, pass.action(platform, issue));
      if (pass.handle && dialog.shouldProceed()) act(pass, issue);
    }
  }
}

}  // namespace

void rehearse(const ReadOnlyPlatform& platform, const HealthReport& report, RevertedChoice reverted,
              const HealthRepairDialog& dialog) {
  goThrough(platform, report, reverted, dialog, [](const Pass&, const HealthIssue&) {});
}

void carryOut(Platform& platform, const HealthReport& report, RevertedChoice reverted,
              const HealthRepairDialog& dialog) {
  HealthRepairRun run(platform, report, dialog.say);
  goThrough(platform, report, reverted, dialog,
            [&](const Pass& pass, const HealthIssue& issue) { pass.handle(run, issue); });
}

}  // namespace quarn::HealthRepair
