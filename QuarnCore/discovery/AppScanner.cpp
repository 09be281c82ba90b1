#include "QuarnCore/discovery/AppScanner.h"

#include <algorithm>
#include <map>

#include "Platform/Text.h"
#include "QuarnCore/discovery/AppBundleScanRoots.h"
#include "QuarnCore/discovery/DataLocator.h"
#include "QuarnCore/discovery/InfoPlist.h"
#include "QuarnCore/discovery/LauncherShim.h"
#include "QuarnCore/foundation/SizingService.h"

namespace quarn {

namespace AppScanner {
namespace {

InfoPlist::Texts textsOf(const ReadOnlyPlatform& platform, const Path& bundle) {
  return InfoPlist::read(platform, bundle).value_or(InfoPlist::Texts{});
}

/// Describes a bundle. `texts` come from the application itself, which for a launcher is its target.
AppEntry describe(const ReadOnlyPlatform& platform, const ProtectedPlaces& places, const Path& bundle,
                  const InfoPlist::Texts& texts, bool isLauncher) {
  AppEntry entry;
  entry.bundlePath = bundle;
  entry.bundleIdentifier = InfoPlist::value(texts, "CFBundleIdentifier");
  entry.id = entry.bundleIdentifier.value_or(bundle.text());
  entry.name = InfoPlist::name(texts).value_or(bundle.nameWithoutExtension());
  entry.version = InfoPlist::value(texts, "CFBundleShortVersionString");
  entry.isAlreadySymlinked = isLauncher || isSymbolicLinkOrInsideOne(platform, bundle);
  entry.dataPaths = DataLocator::locate(
      platform, places,
      {bundle.text(), entry.name, entry.bundleIdentifier, InfoPlist::value(texts, "CFBundleExecutable")});
  entry.isMacAppStore = AppFlags::isMacAppStore(platform, bundle);
  entry.hasLoginItems = AppFlags::hasLoginItems(platform, bundle);
  entry.hasSystemExtension = AppFlags::hasSystemExtension(platform, bundle);
  return entry;
}

std::optional<AppEntry> entryOf(const ReadOnlyPlatform& platform, const ProtectedPlaces& places,
                                const Path& bundle) {
  const auto texts = textsOf(platform, bundle);
  if (!LauncherShim::isExternalAppLauncher(platform, bundle, texts)) {
    return describe(platform, places, bundle, texts, false);
  }
  const auto target = LauncherShim::target(platform, bundle);
  if (!target) return std::nullopt;
  return describe(platform, places, bundle, textsOf(platform, *target), true);
}

/// Returns the entries by path. Sorting by path first gives entries of the same name a fixed order, whatever
/// the order of the disk.
std::map<std::string, AppEntry> entriesByPath(const ReadOnlyPlatform& platform) {
  std::map<std::string, AppEntry> entries;
  const ProtectedPlaces places(platform);
  for (const Path& root : scanRoots(platform)) {
    std::vector<Path> bundles;
    AppBundleEnumerator::walk(platform, root, 0, AppBundleEnumerator::defaultMaxDepth, bundles);
    for (const Path& bundle : bundles) {
      if (auto entry = entryOf(platform, places, bundle)) {
        entries.insert_or_assign(Text::canonical(bundle.text()), *std::move(entry));
      }
    }
  }
  return entries;
}

}  // namespace

std::vector<Path> scanRoots(const ReadOnlyPlatform& platform) {
  return AppBundleScanRoots::standardApplicationRoots(platform, false);
}

std::vector<AppEntry> discoverMetadata(const ReadOnlyPlatform& platform) {
  std::vector<AppEntry> entries;
  for (auto& [path, entry] : entriesByPath(platform)) entries.push_back(std::move(entry));
  std::stable_sort(entries.begin(), entries.end(), [](const AppEntry& a, const AppEntry& b) {
    return Text::localizedCaseInsensitiveCompare(a.name, b.name) < 0;
  });
  return entries;
}

std::optional<AppEntry> metadataEntry(const ReadOnlyPlatform& platform, const Path& bundle) {
  return entryOf(platform, ProtectedPlaces(platform), bundle);
}

AppEntry computeSizes(const ReadOnlyPlatform& platform, const AppEntry& entry) {
  AppEntry sized = entry;
  sized.appSize = SizingService::measure(platform, entry.bundlePath);
  sized.dataPathSizes.clear();
  sized.dataSize = 0;
  for (const Path& path : entry.dataPaths) {
    sized.dataPathSizes.push_back({path, SizingService::measure(platform, path)});
    sized.dataSize += sized.dataPathSizes.back().size;
  }
  return sized;
}

std::optional<Path> launcherShimTarget(const ReadOnlyPlatform& platform, const Path& bundle) {
  return LauncherShim::target(platform, bundle);
}

bool isSymbolicLinkOrInsideOne(const ReadOnlyPlatform& platform, const Path& item) {
  const std::string root = platform.files.standardized(Path("/Applications")).text();
  Path current = platform.files.standardized(item);
  while (Text::hasPrefix(current.text(), root)) {
    if (platform.files.isSymbolicLink(current)) return true;
    const Path parent = current.parent();
    if (parent == current) return false;
    current = parent;
  }
  return false;
}
}  // namespace AppScanner

namespace AppFlags {
namespace {

/// Returns whether a folder, or the folder that a link leads to, contains anything. Most bundles don't have
/// such a folder, so its existence is checked first.
bool hasContents(const ReadOnlyPlatform& platform, const Path& folder) {
  if (!platform.files.isFolder(folder)) return false;
  return !platform.files.list(platform.files.resolvingLinks(folder), Hidden::included).valueOr({}).empty();
}

}  // namespace

bool isMacAppStore(const ReadOnlyPlatform& platform, const Path& bundle) {
  return platform.files.exists(bundle.appending("Contents/_MASReceipt/receipt"));
}

bool hasLoginItems(const ReadOnlyPlatform& platform, const Path& bundle) {
  return hasContents(platform, bundle.appending("Contents/Library/LoginItems"));
}

bool hasSystemExtension(const ReadOnlyPlatform& platform, const Path& bundle) {
  const Path library = bundle.appending("Contents/Library");
  return hasContents(platform, library.appending("SystemExtensions")) ||
         hasContents(platform, library.appending("Extensions"));
}
}  // namespace AppFlags

}  // namespace quarn
