#include "QuarnCore/health/HealthCheck.h"

#include <algorithm>
#include <iterator>

#include "Platform/CocoaError.h"
#include "QuarnCore/discovery/AppBundleScanRoots.h"
#include "QuarnCore/health/BrokenLauncherDetector.h"
#include "QuarnCore/health/DataLinkDetection.h"
#include "QuarnCore/health/RevertDetection.h"
#include "QuarnCore/health/SignatureBrokenDetector.h"
#include "QuarnCore/health/SymlinkScanning.h"
#include "QuarnCore/health/TrackedFilesChecker.h"
#include "QuarnCore/launchers/NestedAppLauncherService.h"

namespace quarn::HealthCheck {
namespace {

using ApplicationsRootScan::Symlink;
using Kind = HealthIssue::Kind;

const Path applications("/Applications");

void append(std::vector<HealthIssue>& issues, std::vector<HealthIssue> more) {
  std::move(more.begin(), more.end(), std::back_inserter(issues));
}

/// Judges each link. What the ledger lists is checked only for those that work.
void inspectLinks(const ReadOnlyPlatform& platform, const std::vector<Symlink>& symlinks,
                  HealthReport& report) {
  for (const auto& [location, target] : symlinks) {
    report.issues.push_back(SymlinkInspector::inspect(platform, location, target));
    if (report.issues.back().kind != Kind::healthy) continue;
    ++report.healthyCount;
    if (auto missing = TrackedFilesChecker::check(platform, location, target))
      report.issues.push_back(*std::move(missing));
  }
}

/// One finding for each folder that is a link, ordered by its path.
std::vector<HealthIssue> missingSpotlightLaunchers(const ReadOnlyPlatform& platform) {
  const auto candidates = NestedAppLauncherService::missingCandidates(platform, applications);
  std::map<std::string, std::vector<NestedAppLauncherCandidate>, CanonicalOrder> byFolder;
  for (const auto& candidate : candidates) byFolder[candidate.folderLink.text()].push_back(candidate);
  std::vector<HealthIssue> issues;
  for (const auto& [folder, group] : byFolder) {
    issues.push_back({.kind = Kind::missingSpotlightLaunchers,
                      .location = group.front().folderLink,
                      .target = group.front().folderTarget,
                      .detail = NestedAppLauncherService::detail(group)});
  }
  return issues;
}

std::string standardized(const ReadOnlyPlatform& platform, const Path& path) {
  return platform.files.standardized(path).text();
}

/// The links on which nothing was found yet: verifying a signature takes long, and a link that doesn't work
/// needs no signature.
std::vector<Symlink> withoutProblems(const ReadOnlyPlatform& platform, const std::vector<Symlink>& symlinks,
                                     const std::vector<HealthIssue>& issues) {
  TextSet withProblem;
  for (const HealthIssue& issue : issues) {
    if (issue.kind != Kind::healthy) withProblem.insert(standardized(platform, issue.location));
  }
  std::vector<Symlink> chosen;
  std::copy_if(symlinks.begin(), symlinks.end(), std::back_inserter(chosen), [&](const Symlink& pair) {
    return !withProblem.contains(standardized(platform, pair.location));
  });
  return chosen;
}

TextSet pathsOf(const ReadOnlyPlatform& platform, const std::vector<Symlink>& symlinks, Path Symlink::*end) {
  TextSet paths;
  for (const Symlink& pair : symlinks) paths.insert(standardized(platform, pair.*end));
  return paths;
}

/// Leaves out what isn't surely real: a link that can't be looked at for a moment passes for an application,
/// and its copy on the drive, which is in use, for one that could go.
std::vector<HealthIssue> surelyReal(const ReadOnlyPlatform& platform, std::vector<HealthIssue> reverted) {
  std::erase_if(reverted, [&platform](const HealthIssue& issue) {
    const auto attributes = platform.files.attributes(issue.location);
    if (!attributes) return !CocoaError::saysMissing(attributes.error());
    return attributes->kind == FileKind::symbolicLink;
  });
  return reverted;
}

/// A link that couldn't be seen may lead to any of them.
std::vector<HealthIssue> orphans(const ReadOnlyPlatform& platform, const std::vector<Path>& drives,
                                 const ApplicationsRootScan::Result& scan) {
  if (!scan.isWhole) return {};
  return OrphanedBundleDetector::detect(platform, drives, pathsOf(platform, scan.symlinks, &Symlink::target),
                                        scan.realAppNames);
}

}  // namespace

HealthReport run(const ReadOnlyPlatform& platform, const std::vector<Path>& applicationRoots,
                 const std::vector<Path>& extraDriveRoots) {
  HealthReport report;
  const auto scan = ApplicationsRootScan::scan(platform, applicationRoots);
  const auto& symlinks = scan.symlinks;
  report.scannedDrives = ExternalAppsRootsDiscovery::roots(platform, extraDriveRoots);
  report.scannedSymlinks = static_cast<int>(symlinks.size());
  // The links come first, because the check of signatures leaves out those that have a problem.
  inspectLinks(platform, symlinks, report);
  auto reverted = SSDRevertDetector::detect(platform, report.scannedDrives, scan.realAppNames);
  append(report.issues, surelyReal(platform, std::move(reverted.issues)));
  append(report.issues, missingSpotlightLaunchers(platform));
  append(report.issues, BrokenLauncherDetector::detect(platform, applications));
  append(report.issues,
         SignatureBrokenDetector::detect(platform, withoutProblems(platform, symlinks, report.issues)));
  append(report.issues, UnsafePrefsPlistDetector::detect(platform, {}));
  append(report.issues, SandboxExternalSymlinkDetector::detect(platform));
  append(report.issues, DanglingDataLinkDetector::detect(platform));
  // Comes after the other check for reverted applications, so that none is reported twice.
  append(report.issues, surelyReal(platform, ManifestRevertDetector::detect(
                                                 platform, pathsOf(platform, symlinks, &Symlink::location),
                                                 reverted.handledSources)));
  append(report.issues, orphans(platform, report.scannedDrives, scan));
  report.scannedAt = platform.clock.now();
  return report;
}

}  // namespace quarn::HealthCheck
