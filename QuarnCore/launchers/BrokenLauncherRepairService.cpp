#include "QuarnCore/launchers/BrokenLauncherRepairService.h"

#include "Platform/Text.h"
#include "QuarnCore/discovery/AppBundleScanRoots.h"
#include "QuarnCore/discovery/InfoPlist.h"
#include "QuarnCore/discovery/LauncherShim.h"
#include "QuarnCore/foundation/Turn.h"
#include "QuarnCore/launchers/LauncherTools.h"

namespace quarn::BrokenLauncherRepairService {
namespace {

/// Resolved, since a folder of applications can be a link to the other one.
bool isSameItem(const ReadOnlyPlatform& platform, const Path& one, const Path& other) {
  return Text::equal(platform.files.resolvingLinks(one).text(), platform.files.resolvingLinks(other).text());
}

bool isReplacement(const ReadOnlyPlatform& platform, const Path& app, const Path& launcher,
                   const std::string& wanted) {
  const auto identifier = BundleIdentifierReader::read(platform, app);
  return identifier && Text::equal(*identifier, wanted) &&
         !Text::hasSuffix(*identifier, LauncherShim::identifierSuffix) &&
         !platform.files.exists(LauncherShim::targetFile(app)) && !isSameItem(platform, app, launcher);
}

/// Returns whether any folder on the way from the launcher to its target file is a link, so that writing the
/// file would change something outside of the launcher.
bool leadsOutside(const ReadOnlyPlatform& platform, const Path& launcher) {
  for (const char* folder : {"", "Contents", "Contents/Resources"}) {
    if (platform.files.isSymbolicLink(launcher.appending(folder))) return true;
  }
  return false;
}

bool isLauncher(const ReadOnlyPlatform& platform, const Path& bundle) {
  const auto texts = InfoPlist::read(platform, bundle);
  return texts && LauncherShim::isExternalAppLauncher(platform, bundle, *texts) &&
         !leadsOutside(platform, bundle);
}

}  // namespace

std::optional<Path> replacementTarget(const ReadOnlyPlatform& platform, const Path& launcher) {
  const auto identifier = BundleIdentifierReader::read(platform, launcher);
  const std::string wanted = LauncherShim::withoutIdentifierSuffix(identifier.value_or(""));
  // An empty identifier names no application, and any application may have it.
  if (wanted.empty()) return std::nullopt;
  for (const Path& root : {Path("/Applications"), platform.places.home().appending("Applications")}) {
    std::vector<Path> apps;
    AppBundleEnumerator::walk(platform, root, 0, AppBundleEnumerator::defaultMaxDepth, apps);
    for (const Path& app : apps) {
      if (isReplacement(platform, app, launcher, wanted)) return app;
    }
  }
  return std::nullopt;
}

std::string repair(Platform& platform, const Path& launcher) {
  const Turn turn(platform);
  const std::string name = launcher.lastComponent();
  const auto target = replacementTarget(platform, launcher);
  if (!target) {
    return "No replacement app found for " + name + ". Reinstall the app or remove the broken launcher.";
  }
  const std::string failed = "Could not retarget " + name + ": ";
  if (!isLauncher(platform, launcher)) return failed + "“" + name + "” isn’t a launcher.";
  const auto written = platform.files.writeAtomically(LauncherShim::targetFile(launcher), target->text());
  if (!written) return failed + written.error().localizedDescription();
  LauncherTools::sign(platform, launcher, InstallerRunReporter::silent());
  LauncherTools::registerLauncher(platform, launcher, InstallerRunReporter::silent());
  return "Retargeted " + name + " to " + target->text() + ".";
}

}  // namespace quarn::BrokenLauncherRepairService
