#include "QuarnCore/installer/UninstallPlanner.h"

#include <algorithm>

#include "QuarnCore/foundation/CommandRunner.h"
#include "QuarnCore/foundation/FileStash.h"
#include "QuarnCore/installer/ChangedPathGuard.h"
#include "QuarnCore/installer/InstallAction.h"

namespace quarn {
namespace {

/// An identifier that looks like an option would be taken for one.
bool isIdentifier(const std::string& text) {
  return !text.empty() && text.front() != '-';
}

void forgetReceipt(Platform& platform, const std::string& packageID) {
  if (isIdentifier(packageID)) CommandRunner::run(platform, "/usr/sbin/pkgutil", {"--forget", packageID});
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
  for (const std::string& line : UninstallPlanner::plan(session)) {
    const auto path = InstallAction::trashed(line);
    if (path && guard.allows(Path(*path))) FileStash::moveAside(platform, Path(*path), "uninstall");
    if (const auto packageID = InstallAction::forgottenReceipt(line)) forgetReceipt(platform, *packageID);
  }
}

}  // namespace quarn
