#include "QuarnCore/uninstall/InstalledAppsScanner.h"

#include <algorithm>
#include <chrono>
#include <map>

#include "Platform/Text.h"
#include "QuarnCore/discovery/AppBundleScanRoots.h"
#include "QuarnCore/uninstall/AppRecordBuilder.h"
#include "QuarnCore/uninstall/ExternalTarget.h"
#include "QuarnCore/uninstall/UninstallCandidateGuard.h"

namespace quarn::InstalledAppsScanner {
namespace {

using Records = std::vector<AppRecord>;
/// By canonical path, so that the order doesn't depend on that of the disk.
using RecordsByPath = std::map<std::string, AppRecord>;

constexpr int supplementalMaxDepth = 4;
constexpr std::chrono::seconds recent{31'536'000};  // a year

void addBundles(const ReadOnlyPlatform& platform, const Path& root, int maxDepth, RecordsByPath& records) {
  std::vector<Path> bundles;
  AppBundleEnumerator::walk(platform, root, 0, maxDepth, bundles);
  for (const Path& bundle : bundles) {
    const auto [place, isNew] = records.try_emplace(Text::canonical(bundle.text()));
    if (isNew) place->second = AppRecordBuilder::build(platform, bundle);
  }
}

std::vector<Path> externalTargets(const RecordsByPath& records) {
  std::vector<Path> targets;
  for (const auto& [path, record] : records) {
    if (const auto target = ExternalTarget::of(record)) targets.push_back(*target);
  }
  return targets;
}

/// Adds the copies on a drive, which no root covers. A link or a launcher that leads to anything but an
/// application adds nothing.
void addExternalTargets(const ReadOnlyPlatform& platform, RecordsByPath& records) {
  for (const Path& target : externalTargets(records)) {
    const std::string key = Text::canonical(target.text());
    if (!UninstallCandidateGuard::isBundle(target) || records.contains(key)) continue;
    if (auto record = inspect(platform, target)) records.emplace(key, *std::move(record));
  }
}

int canonicalScore(const AppRecord& record, Moment now) {
  const Path bundle(record.bundlePath);
  int score = 0;
  if (!record.isSymlink) score += 8;
  if (!record.isQuarnLauncher) score += 4;
  if (Text::hasPrefix(record.bundlePath, "/Applications/")) score += 2;
  if (record.bundleSizeBytes >= 1) score += 1;
  if (Text::equal(bundle.nameWithoutExtension(), record.displayName)) score += 2;
  if (record.modifiedAt && *record.modifiedAt > now - recent) score += 1;
  return score;
}

/// Returns the record of several with one identifier that stays: the first of those with the best score.
const AppRecord& best(const Records& group, Moment now) {
  return *std::max_element(group.begin(), group.end(), [now](const AppRecord& a, const AppRecord& b) {
    return canonicalScore(a, now) < canonicalScore(b, now);
  });
}

Records onePerIdentifier(const RecordsByPath& all, Moment now) {
  Records kept;
  std::map<std::string, Records> byIdentifier;
  for (const auto& [path, record] : all) {
    const std::string identifier = record.bundleIdentifier.value_or("");
    (identifier.empty() ? kept : byIdentifier[Text::canonical(identifier)]).push_back(record);
  }
  for (const auto& [identifier, group] : byIdentifier) kept.push_back(best(group, now));
  return kept;
}

}  // namespace

std::vector<Path> scanRoots(const ReadOnlyPlatform& platform) {
  return AppBundleScanRoots::standardApplicationRoots(platform, true);
}

std::vector<Path> supplementalAppSupportRoots(const ReadOnlyPlatform& platform) {
  return AppBundleScanRoots::supplementalApplicationSupportRoots(platform, supplementalMaxDepth);
}

std::vector<AppRecord> discover(const ReadOnlyPlatform& platform) {
  RecordsByPath all;
  for (const Path& root : scanRoots(platform))
    addBundles(platform, root, AppBundleEnumerator::defaultMaxDepth, all);
  for (const Path& root : supplementalAppSupportRoots(platform))
    addBundles(platform, root, supplementalMaxDepth, all);
  addExternalTargets(platform, all);
  Records records = onePerIdentifier(all, platform.clock.now());
  std::stable_sort(records.begin(), records.end(), [](const AppRecord& a, const AppRecord& b) {
    return Text::localizedCaseInsensitiveCompare(a.displayName, b.displayName) < 0;
  });
  return records;
}

std::optional<AppRecord> inspect(const ReadOnlyPlatform& platform, const Path& bundle) {
  if (!platform.files.attributes(bundle)) return std::nullopt;
  return AppRecordBuilder::build(platform, bundle);
}

}  // namespace quarn::InstalledAppsScanner
