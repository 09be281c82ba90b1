#include "QuarnCore/installer/UninstallPlanner.h"

#include <algorithm>
#include <array>

#include "Platform/Text.h"
#include "QuarnCore/foundation/FileStash.h"
#include "QuarnCore/foundation/Sighting.h"
#include "QuarnCore/installer/ChangedPathGuard.h"
#include "QuarnCore/installer/InstallAction.h"
#include "QuarnCore/installer/PackageReceipts.h"

namespace quarn {
namespace {

/// Returns the launchers and copies that a session names as installed.
std::vector<Path> applicationsOf(const InstallerSession& session) {
  std::vector<Path> applications;
  for (const std::string& action : session.actions) {
    for (const std::string& path : InstallAction::installedPaths(action)) applications.emplace_back(path);
  }
  return applications;
}

/// Kinds of folders that the Finder shows as one item, and that are replaced and removed as one.
constexpr std::array<std::string_view, 20> bundleExtensions{
    "app",     "appex",           "bundle", "component", "dext",     "framework",   "kext",
    "lproj",   "mdimporter",      "pkg",    "plugin",    "prefpane", "qlgenerator", "saver",
    "service", "systemextension", "vst",    "vst3",      "workflow", "xpc"};

bool isBundle(const Path& folder) {
  const std::string extension = Text::lowercased(folder.extension());
  return std::find(bundleExtensions.begin(), bundleExtensions.end(), extension) != bundleExtensions.end();
}

/// Returns false for a folder in which something is left: what the session names in it went before. What the
/// Finder leaves in every folder doesn't count.
bool isAllOurs(const ReadOnlyPlatform& platform, const Path& item) {
  const auto attributes = platform.files.attributes(item);
  if (!attributes || attributes->kind != FileKind::folder || isBundle(item)) return true;
  const auto names = platform.files.list(item, Hidden::included);
  return names && std::all_of(names->begin(), names->end(), [](const std::string& name) {
           return name == ".DS_Store" || name == ".localized";
         });
}

}  // namespace

std::vector<std::string> UninstallPlanner::plan(const InstallerSession& session) {
  std::vector<std::string> paths = session.changedPaths;
  std::sort(paths.begin(), paths.end());
  std::vector<std::string> lines;
  std::transform(paths.rbegin(), paths.rend(), std::back_inserter(lines), InstallAction::trash);
  std::transform(session.newReceipts.begin(), session.newReceipts.end(), std::back_inserter(lines),
                 InstallAction::forgetReceipt);
  return lines;
}

void SessionUninstaller::carryOut(Platform& platform, const InstallerSession& session) {
  const ChangedPathGuard guard(platform, session);
  const std::vector<Path> applications = applicationsOf(session);
  for (const std::string& line : UninstallPlanner::plan(session)) {
    if (const auto path = InstallAction::trashed(line)) {
      const Path item(*path);
      const bool goesAlong = isInsideAnyByText(item, applications);
      if (!goesAlong && guard.allows(item) && isAllOurs(platform, item))
        FileStash::moveAside(platform, item, "uninstall");
    }
    if (const auto packageID = InstallAction::forgottenReceipt(line))
      PackageReceipts::forget(platform, *packageID);
  }
}

}  // namespace quarn
