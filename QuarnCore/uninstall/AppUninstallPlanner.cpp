#include "QuarnCore/uninstall/AppUninstallPlanner.h"

#include <algorithm>

#include "Platform/Text.h"
#include "QuarnCore/health/SpotlightHealthCheck.h"
#include "QuarnCore/uninstall/ExternalTarget.h"
#include "QuarnCore/uninstall/RelatedFileScanner.h"

namespace quarn {

std::vector<AppUninstallPlan::Group> AppUninstallPlan::grouped() const {
  std::vector<Group> groups;
  for (const UninstallCategory category : allCases<UninstallCategory>()) {
    Group group{category, {}};
    std::copy_if(candidates.begin(), candidates.end(), std::back_inserter(group.second),
                 [category](const UninstallCandidate& candidate) { return candidate.category == category; });
    if (!group.second.empty()) groups.push_back(std::move(group));
  }
  return groups;
}

namespace AppUninstallPlanner {
namespace {

bool holds(const std::vector<UninstallCandidate>& candidates, UninstallCategory category) {
  return std::any_of(candidates.begin(), candidates.end(),
                     [category](const UninstallCandidate& each) { return each.category == category; });
}

std::vector<std::string> warningsFor(const AppRecord& app,
                                     const std::vector<UninstallCandidate>& candidates) {
  std::vector<std::string> warnings;
  if (app.kind == AppRecordKind::systemRisky)
    warnings.push_back("Refusing system app uninstall: " + app.bundlePath);
  if (app.hasSystemExtension) warnings.emplace_back("App declares a system extension; review carefully.");
  if (app.isMacAppStore) warnings.emplace_back("Mac App Store app; receipt may also need to be forgotten.");
  if (holds(candidates, UninstallCategory::launchDaemons))
    warnings.emplace_back("Launch daemons detected; requires admin authentication.");
  if (app.kind == AppRecordKind::quarnLauncher && app.externalTargetPath)
    warnings.emplace_back("Quarn launcher: external target will only be removed if explicitly included.");
  return warnings;
}

bool isExternalTarget(const UninstallCandidate& candidate, const AppRecord& app) {
  const auto target = ExternalTarget::of(app);
  return target && Text::equal(candidate.path, target->text());
}

bool isExecutableSelected(const UninstallCandidate& candidate, const AppRecord& app,
                          const UninstallSelection& selection) {
  if (Text::equal(candidate.path, app.bundlePath)) return true;
  return isExternalTarget(candidate, app) ? selection.includeExternalTarget : candidate.defaultSelected;
}

}  // namespace

AppUninstallPlan plan(const ReadOnlyPlatform& platform, const AppRecord& app,
                      const UninstallSelection& selection) {
  AppUninstallPlan plan;
  plan.app = app;
  plan.candidates = RelatedFileScanner::scan(platform, app);
  plan.warnings = warningsFor(app, plan.candidates);
  const auto ofSpotlight = SpotlightHealthCheck::warnings(platform);
  plan.warnings.insert(plan.warnings.end(), ofSpotlight.begin(), ofSpotlight.end());
  for (const UninstallCandidate& candidate : plan.candidates) {
    plan.totalBytes += candidate.sizeBytes;
    if (effectiveSelected(candidate, app, selection)) plan.selectedBytes += candidate.sizeBytes;
  }
  return plan;
}

bool effectiveSelected(const UninstallCandidate& candidate, const AppRecord& app,
                       const UninstallSelection& selection) {
  if (candidate.category == UninstallCategory::executable)
    return isExecutableSelected(candidate, app, selection);
  return selection.allows(candidate.category) && candidate.defaultSelected;
}

}  // namespace AppUninstallPlanner
}  // namespace quarn
