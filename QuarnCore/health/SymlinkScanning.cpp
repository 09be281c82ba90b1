#include "QuarnCore/health/SymlinkScanning.h"

#include <algorithm>

#include "Platform/CocoaError.h"
#include "Platform/PathText.h"
#include "QuarnCore/foundation/SizeCalculator.h"

namespace quarn {
namespace {

std::optional<Path> targetOf(const ReadOnlyPlatform& platform, const Path& link) {
  const auto text = platform.files.readSymbolicLink(link);
  if (!text) return std::nullopt;
  return PathText::linkTarget(link, *text).simplified();
}

}  // namespace

namespace ApplicationsRootScan {
namespace {

void add(const ReadOnlyPlatform& platform, const Path& bundle, Result& result) {
  const auto attributes = platform.files.attributes(bundle);
  if (!attributes || attributes->kind != FileKind::symbolicLink) {
    result.realAppNames.insert(bundle.lastComponent());
    if (!attributes) result.isWhole = false;
  } else if (auto target = targetOf(platform, bundle)) {
    result.symlinks.push_back({bundle, *std::move(target)});
  } else {
    result.isWhole = false;
  }
}

}  // namespace

Result scan(const ReadOnlyPlatform& platform, const std::vector<Path>& roots) {
  Result result;
  for (const Path& root : roots) {
    const auto bundles = FolderChildren::bundles(platform, root);
    if (!bundles) {
      if (!CocoaError::saysMissing(bundles.error())) result.isWhole = false;
      continue;
    }
    for (const Path& bundle : *bundles) add(platform, bundle, result);
  }
  return result;
}

}  // namespace ApplicationsRootScan

namespace SymlinkScanner {
namespace {

SymlinkEntry entryOf(const ReadOnlyPlatform& platform, const Path& link, const Path& target) {
  const bool isValid = platform.files.exists(target);
  return {.id = link.text(),
          .location = link,
          .target = target,
          .isValid = isValid,
          .targetSize = isValid ? SizeCalculator::size(platform, target) : 0};
}

}  // namespace

std::vector<Path> defaultRoots(const Places& places) {
  const Path home = places.home();
  std::vector<Path> roots = {Path("/Applications")};
  for (const char* folder : {"Applications", "Library/Application Support", "Library/Containers",
                             "Library/Group Containers", "Music"})
    roots.push_back(home.appending(folder));
  roots.push_back(home);
  return roots;
}

std::vector<SymlinkEntry> scan(const ReadOnlyPlatform& platform, const std::vector<Path>& roots) {
  TextSet seen;
  std::vector<SymlinkEntry> entries;
  for (const Path& root : roots) {
    for (const Path& link : FolderChildren::links(platform, root, Hidden::skipped)) {
      if (!seen.insert(link.text()).second) continue;
      if (const auto target = targetOf(platform, link)) entries.push_back(entryOf(platform, link, *target));
    }
  }
  std::stable_sort(entries.begin(), entries.end(),
                   [](const SymlinkEntry& a, const SymlinkEntry& b) { return Text::precedes(a.id, b.id); });
  return entries;
}

}  // namespace SymlinkScanner

namespace SymlinkInspector {
namespace {

/// Returns whether a bundle has anything to execute. The folder may be a link: the application starts all the
/// same.
bool hasExecutable(const ReadOnlyPlatform& platform, const Path& bundle) {
  const Path folder = platform.files.resolvingLinks(bundle.appending("Contents/MacOS"));
  return !platform.files.list(folder, Hidden::included).valueOr({}).empty();
}

}  // namespace

HealthIssue inspect(const ReadOnlyPlatform& platform, const Path& location, const Path& target) {
  const auto issue = [&](HealthIssue::Kind kind, const char* detail, std::int64_t size) {
    return HealthIssue{
        .kind = kind, .location = location, .target = target, .detail = detail, .sizeBytes = size};
  };
  if (!platform.files.exists(target))
    return issue(HealthIssue::Kind::dangling,
                 "Target does not exist. The external drive may be unmounted, or the file was deleted.", 0);
  const std::int64_t size = SizeCalculator::size(platform, target);
  if (!platform.files.exists(target.appending("Contents/Info.plist")))
    return issue(HealthIssue::Kind::empty,
                 "Bundle directory exists but has no Contents/Info.plist. App is unlaunchable.", size);
  if (!hasExecutable(platform, target))
    return issue(HealthIssue::Kind::corrupted, "Bundle has Info.plist but no executable in Contents/MacOS/.",
                 size);
  return issue(HealthIssue::Kind::healthy, "", size);
}

}  // namespace SymlinkInspector
}  // namespace quarn
