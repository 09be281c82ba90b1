#include "QuarnCore/installer/InstallerPlanner.h"

#include "QuarnCore/health/SpotlightHealthCheck.h"
#include "QuarnCore/installer/AppInstallEngine.h"
#include "QuarnCore/installer/InstallAction.h"
#include "QuarnCore/installer/InstallerInspector.h"

namespace quarn::InstallerPlanner {
namespace {

using Lines = std::vector<std::string>;

Lines actionsOf(const InstallableItem& item, const InstallerOption& option, const Path& targetDrive) {
  const Path path(item.path);
  switch (item.kind) {
    case InstallerKind::pkg:
    case InstallerKind::mpkg:
      return {"snapshot-before", InstallAction::line("install-pkg", {item.path, "/"}), "snapshot-after",
              "receipt-diff", "externalize-safe-new-apps"};
    case InstallerKind::app: {
      const std::string destination = AppInstallEngine::destination(path, option, targetDrive).text();
      // Not as a path, which would drop a doubled slash.
      const std::string launcher = option.applicationLinkRoot + "/" + path.lastComponent();
      return {InstallAction::line("copy-app", {item.path, destination}),
              InstallAction::line("launcher-app", {launcher, destination})};
    }
    default:
      return {InstallAction::line("inspect-contained", {item.path})};
  }
}

bool isPackage(InstallerKind kind) {
  return kind == InstallerKind::pkg || kind == InstallerKind::mpkg;
}

Lines policyWarnings(const InstallerInspection& inspection, const InstallerOption& option) {
  if (option.allowUntrustedPackages || !isPackage(inspection.kind) || inspection.trust.isTrusted()) return {};
  return {"Untrusted packages are blocked."};
}

void append(Lines& lines, const Lines& more) {
  lines.insert(lines.end(), more.begin(), more.end());
}

}  // namespace

InstallerPlan plan(const ReadOnlyPlatform& platform, TemporaryFolders& temporaryFolders,
                   const InstallerSource& source, const InstallerOption& option, const Path& targetDrive) {
  const InstallerInspection inspection = InstallerInspector::inspect(platform, temporaryFolders, source);
  InstallerPlan plan{.sourcePath = inspection.sourcePath,
                     .optionID = option.id,
                     .targetDrivePath = targetDrive.text(),
                     .actions = {},
                     .warnings = inspection.warnings};
  append(plan.warnings, policyWarnings(inspection, option));
  append(plan.warnings, SpotlightHealthCheck::warnings(platform));
  for (const InstallableItem& item : inspection.items) {
    append(plan.actions, actionsOf(item, option, targetDrive));
    plan.neededBytes += item.sizeBytes;
  }
  return plan;
}

}  // namespace quarn::InstallerPlanner
