#include "QuarnCore/uninstall/AppUninstallRunner.h"

#include <algorithm>

#include "Platform/DateText.h"
#include "Platform/Text.h"
#include "QuarnCore/foundation/Turn.h"
#include "QuarnCore/uninstall/AppUninstallError.h"
#include "QuarnCore/uninstall/PlannedApp.h"
#include "QuarnCore/uninstall/UninstallObstacles.h"
#include "QuarnCore/uninstall/UninstallRemoval.h"

namespace quarn::AppUninstallRunner {
namespace {

using Candidates = std::vector<UninstallCandidate>;
using SelectedPaths = std::optional<std::set<std::string>>;

/// Some applications of the system are links in the folder for applications.
bool isPartOfSystem(const ReadOnlyPlatform& platform, const AppRecord& app) {
  return app.kind == AppRecordKind::systemRisky ||
         isAtOrInByText(sight(platform.files, Path(app.bundlePath)).leadsTo, Path("/System"));
}

void requireUninstallable(const ReadOnlyPlatform& platform, const AppRecord& app,
                          const UninstallObstacles& obstacles) {
  if (isPartOfSystem(platform, app))
    throw AppUninstallError::refused("Refusing to uninstall system app: " + app.bundlePath);
  if (const auto why = obstacles.reasonToStay({.path = app.bundlePath}))
    throw AppUninstallError::refused("Refusing to uninstall: " + *why);
  const Path bundle(app.bundlePath);
  if (!UninstallCandidateGuard::isBundle(bundle))
    throw AppUninstallError::refused("Refusing to uninstall: “" + bundle.lastComponent() +
                                     "” isn’t an application.");
  if (const auto why = PlannedApp::reasonToDoubt(platform, app))
    throw AppUninstallError::refused("Refusing to uninstall: " + *why);
}

Candidates chosen(const AppUninstallPlan& plan, const UninstallSelection& selection,
                  const SelectedPaths& selectedPaths) {
  const auto isTaken = [&](const UninstallCandidate& candidate) {
    if (!selectedPaths) return AppUninstallPlanner::effectiveSelected(candidate, plan.app, selection);
    return std::any_of(selectedPaths->begin(), selectedPaths->end(),
                       [&](const std::string& path) { return Text::equal(path, candidate.path); });
  };
  Candidates taken;
  std::copy_if(plan.candidates.begin(), plan.candidates.end(), std::back_inserter(taken), isTaken);
  return taken;
}

void logStart(const AppUninstallReporter& reporter, const AppRecord& app, bool dryRun) {
  reporter.log("uninstall-start\t" + app.bundlePath + "\tdry=" + (dryRun ? "true" : "false"));
}

void logEnd(const AppUninstallReporter& reporter, const AppUninstallSession& session) {
  reporter.log("uninstall-done\titems=" + std::to_string(session.movedItems.size()) +
               "\treceipts=" + std::to_string(session.forgottenReceipts.size()));
}

void rehearse(const UninstallCandidate& candidate, const UninstallObstacles& obstacles,
              AppUninstallSession& session, const AppUninstallReporter& reporter) {
  if (candidate.category == UninstallCategory::receipts) {
    session.forgottenReceipts.push_back(candidate.path);
    return reporter.log("dry-forget-receipt\t" + candidate.path);
  }
  auto& item = session.movedItems.emplace_back(AppUninstallSession::MovedItem::of(candidate));
  if (const auto why = obstacles.reasonToStay(candidate)) return reporter.logKept(item, *why);
  item.succeeded = true;
  reporter.logStep("dry-trash", item);
}

}  // namespace

AppUninstallSession run(Platform& platform, const AppUninstallPlan& plan, const UninstallSelection& selection,
                        bool dryRun, const SelectedPaths& selectedPaths,
                        const AppUninstallReporter& reporter) {
  if (dryRun) return rehearse(platform, plan, selection, selectedPaths, reporter);
  const Turn turn(platform);
  const Candidates candidates = chosen(plan, selection, selectedPaths);
  requireUninstallable(platform, plan.app, UninstallObstacles(platform, plan.app, candidates));
  logStart(reporter, plan.app, false);
  const auto session = UninstallRemoval(platform, plan.app, candidates, reporter).carryOut();
  reporter.log("session\t" + session.id);
  logEnd(reporter, session);
  return session;
}

AppUninstallSession rehearse(const ReadOnlyPlatform& platform, const AppUninstallPlan& plan,
                             const UninstallSelection& selection, const SelectedPaths& selectedPaths,
                             const AppUninstallReporter& reporter) {
  const Candidates candidates = chosen(plan, selection, selectedPaths);
  const UninstallObstacles obstacles(platform, plan.app, candidates);
  requireUninstallable(platform, plan.app, obstacles);
  logStart(reporter, plan.app, true);
  const Moment now = platform.clock.now();
  auto session = AppUninstallSession::begun(plan.app, DateText::compactLocal(now), now, true);
  for (const UninstallCandidate& candidate : candidates) rehearse(candidate, obstacles, session, reporter);
  logEnd(reporter, session);
  return session;
}

}  // namespace quarn::AppUninstallRunner
