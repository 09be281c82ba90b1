#include "QuarnCore/launchers/NestedAppLauncherService.h"

#include <algorithm>

#include "Platform/Text.h"
#include "QuarnCore/discovery/AppBundleScanRoots.h"
#include "QuarnCore/discovery/LauncherShim.h"
#include "QuarnCore/foundation/Sighting.h"
#include "QuarnCore/foundation/Turn.h"
#include "QuarnCore/launchers/LauncherAppBuilder.h"

namespace quarn::NestedAppLauncherService {
namespace {

using Candidate = NestedAppLauncherCandidate;

constexpr int deepest = 1;
constexpr std::size_t mostNames = 4;

/// Returns whether the application is the very thing at the launcher's path, as it is behind a link to the
/// folder of applications itself. A launcher there would open itself. What can't be looked at may
/// be that.
bool isItsOwnLauncher(const ReadOnlyPlatform& platform, const Candidate& candidate) {
  const Sighting ofApp = sight(platform.files, candidate.targetApp.parent());
  const Sighting ofLauncher = sight(platform.files, candidate.launcher.parent());
  if (ofApp.failure || ofLauncher.failure) return true;
  return ofApp.isAtOrIn(ofLauncher) && ofLauncher.isAtOrIn(ofApp);
}

void appendApps(const ReadOnlyPlatform& platform, const Path& link, const Path& folder, const Path& root,
                std::vector<Candidate>& candidates) {
  std::vector<Path> apps;
  AppBundleEnumerator::walk(platform, folder, 0, deepest, apps);
  for (const Path& app : apps) {
    const std::string name = app.lastComponent();
    const Candidate candidate{link, folder, link.appending(name), app, root.appending(name)};
    if (!isItsOwnLauncher(platform, candidate)) candidates.push_back(candidate);
  }
}

std::vector<Candidate> candidatesIn(const ReadOnlyPlatform& platform, const Path& root) {
  std::vector<Candidate> candidates;
  for (const std::string& name : platform.files.list(root, Hidden::included).valueOr({})) {
    const Path child = root.appending(name);
    const auto target =
        child.extension() == "app" ? std::nullopt : platform.files.readSymbolicLink(child).asOptional();
    if (!target) continue;
    const Path absolute = target->starts_with('/') ? Path(*target) : root.appending(*target);
    appendApps(platform, child, platform.files.standardized(absolute), root, candidates);
  }
  return candidates;
}

bool isFree(const ReadOnlyPlatform& platform, const Path& path) {
  return !platform.files.exists(path) && !platform.files.isSymbolicLink(path);
}

bool isMissing(const ReadOnlyPlatform& platform, const Candidate& candidate) {
  const auto recorded = LauncherShim::recordedTarget(platform, candidate.launcher);
  if (!recorded) return isFree(platform, candidate.launcher);
  return !Text::equal(*recorded, candidate.targetApp.text());
}

/// Differs for an empty target file: right after a move, its bundle counts as any other bundle.
bool needsLauncher(const ReadOnlyPlatform& platform, const Candidate& candidate) {
  const auto recorded = LauncherShim::recordedTarget(platform, candidate.launcher);
  if (recorded && recorded->empty()) return isFree(platform, candidate.launcher);
  return isMissing(platform, candidate);
}

bool installOne(Platform& platform, const Candidate& candidate, const InstallerRunReporter& reporter) {
  try {
    LauncherAppBuilder::install(platform, candidate.targetApp, candidate.launcher, candidate.targetApp,
                                reporter);
    return true;
  } catch (const LocalizedError& error) {
    reporter.log("launcher-repair-failed\t" + candidate.launcher.text() + "\t" +
                 error.localizedDescription());
    return false;
  }
}

}  // namespace

std::vector<Candidate> missingCandidates(const ReadOnlyPlatform& platform, const Path& applicationRoot) {
  auto candidates = candidatesIn(platform, applicationRoot);
  std::erase_if(candidates, [&](const Candidate& candidate) { return !isMissing(platform, candidate); });
  return candidates;
}

std::string detail(const std::vector<Candidate>& group) {
  std::string names;
  for (std::size_t i = 0; i < std::min(group.size(), mostNames); ++i)
    names += (i > 0 ? ", " : "") + group[i].launcher.lastComponent();
  if (group.size() > mostNames) names += " (+" + std::to_string(group.size() - mostNames) + " more)";
  return "Nested apps need top-level launchers for Spotlight: " + names;
}

int installMissingLaunchers(Platform& platform, const Path& folderLink, const Path& applicationRoot,
                            const InstallerRunReporter& reporter) {
  const Turn turn(platform);
  const std::string wanted = platform.files.standardized(folderLink).text();
  int installed = 0;
  for (const Candidate& candidate : missingCandidates(platform, applicationRoot)) {
    if (!Text::equal(platform.files.standardized(candidate.folderLink).text(), wanted)) continue;
    installed += installOne(platform, candidate, reporter) ? 1 : 0;
  }
  return installed;
}

void installLaunchers(Platform& platform, const Path& movedFolder, const Path& destination,
                      const InstallerRunReporter& reporter) {
  const Turn turn(platform);
  const Path root = movedFolder.parent();
  if (platform.files.standardized(root).text() != "/Applications" || movedFolder.extension() == "app") return;
  std::vector<Candidate> candidates;
  appendApps(platform, movedFolder, destination, root, candidates);
  for (const Candidate& candidate : candidates) {
    if (needsLauncher(platform, candidate)) installOne(platform, candidate, reporter);
  }
}

}  // namespace quarn::NestedAppLauncherService
