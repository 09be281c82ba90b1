#include "QuarnCore/health/HealthRepair.h"

#include <algorithm>
#include <vector>

#include "QuarnCore/health/HealthRepairHandlers.h"

namespace quarn::HealthRepair {
namespace {

using Kind = HealthIssue::Kind;

/// A repair as it was shown. One without `carryOut` is only shown.
struct Step {
  std::string action;
  std::function<void(HealthRepairRun&)> carryOut;
};

/// The kinds that are gone through together.
struct Pass {
  std::vector<Kind> kinds;
  Step (*step)(const ReadOnlyPlatform&, const HealthIssue&);
};

template <auto action, auto handle>
Step stepOf(const ReadOnlyPlatform&, const HealthIssue& issue) {
  return {action(issue), [&issue](HealthRepairRun& run) { handle(run, issue); }};
}

/// Where the link is to lead is decided once, so that what is done is what was shown.
Step danglingStep(const ReadOnlyPlatform& platform, const HealthIssue& issue) {
  namespace Handler = HealthRepairDanglingHandler;
  const auto candidate = Handler::candidate(platform, issue);
  return {Handler::action(candidate),
          [&issue, candidate](HealthRepairRun& run) { Handler::handle(run, issue, candidate); }};
}

Step choiceIsNeeded(const ReadOnlyPlatform&, const HealthIssue&) {
  return {"needs --reclaim-reverted (delete SSD copy) or --re-symlink-reverted (re-move). Skipping.",
          nullptr};
}

Pass revertedPass(RevertedChoice choice) {
  namespace Handler = HealthRepairRevertHandler;
  if (choice == RevertedChoice::reclaim)
    return {{Kind::reverted}, stepOf<Handler::reclaimAction, Handler::handleReclaim>};
  if (choice == RevertedChoice::reSymlink)
    return {{Kind::reverted}, stepOf<Handler::reSymlinkAction, Handler::handleReSymlink>};
  return {{Kind::reverted}, choiceIsNeeded};
}

std::vector<Pass> passes(RevertedChoice reverted) {
  namespace Empty = HealthRepairEmptyHandler;
  namespace Orphan = HealthRepairOrphanHandler;
  namespace TrackedFiles = HealthRepairMissingTrackedFilesHandler;
  namespace SpotlightLaunchers = HealthRepairSpotlightLaunchersHandler;
  namespace UnsafePrefs = HealthRepairUnsafePrefsHandler;
  return {
      {{Kind::dangling}, danglingStep},
      {{Kind::empty, Kind::corrupted}, stepOf<Empty::action, Empty::handle>},
      revertedPass(reverted),
      {{Kind::orphan}, stepOf<Orphan::action, Orphan::handle>},
      {{Kind::missingTrackedFiles}, stepOf<TrackedFiles::action, TrackedFiles::handle>},
      {{Kind::missingSpotlightLaunchers}, stepOf<SpotlightLaunchers::action, SpotlightLaunchers::handle>},
      {{Kind::unsafePrefsPlist}, stepOf<UnsafePrefs::action, UnsafePrefs::handle>},
  };
}

bool isOf(const Pass& pass, const HealthIssue& issue) {
  return std::find(pass.kinds.begin(), pass.kinds.end(), issue.kind) != pass.kinds.end();
}

/// Shows every repair, and hands those that are agreed to to `act`.
void goThrough(const ReadOnlyPlatform& platform, const HealthReport& report, RevertedChoice reverted,
               const HealthRepairDialog& dialog, const std::function<void(const Step&)>& act) {
  for (const Pass& pass : passes(reverted)) {
    for (const HealthIssue& issue : report.issues) {
      if (!isOf(pass, issue)) continue;
      const Step step = pass.step(platform, issue);
      dialog.describe(issue, step.action);
      if (step.carryOut && dialog.shouldProceed()) act(step);
    }
  }
}

}  // namespace

void rehearse(const ReadOnlyPlatform& platform, const HealthReport& report, RevertedChoice reverted,
              const HealthRepairDialog& dialog) {
  goThrough(platform, report, reverted, dialog, [](const Step&) {});
}

void carryOut(Platform& platform, const HealthReport& report, RevertedChoice reverted,
              const HealthRepairDialog& dialog) {
  HealthRepairRun run(platform, report, dialog.say);
  goThrough(platform, report, reverted, dialog, [&](const Step& step) { step.carryOut(run); });
}

}  // namespace quarn::HealthRepair
