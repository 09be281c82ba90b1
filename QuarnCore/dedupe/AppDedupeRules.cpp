#include "QuarnCore/dedupe/AppDedupeRules.h"

#include <string_view>
#include <utility>

#include "Platform/Text.h"
#include "QuarnCore/discovery/InfoPlist.h"
#include "QuarnCore/discovery/LauncherShim.h"

namespace quarn::AppDedupeRules {
namespace {

std::optional<std::string> nonEmptyText(const InfoPlist::Texts& texts, const std::string& key) {
  auto text = InfoPlist::value(texts, key);
  if (text && text->empty()) return std::nullopt;
  return text;
}

std::optional<std::string> launcherTarget(const ReadOnlyPlatform& platform, const Path& bundle) {
  auto text = LauncherShim::recordedTarget(platform, bundle);
  if (text && text->empty()) return std::nullopt;
  return text;
}

/// A target file without a text makes no launcher here: it names nothing that could be duplicated.
bool isLauncher(const InfoPlist::Texts& texts, const AppDedupeItem& item) {
  return item.targetPath || InfoPlist::value(texts, "CFBundleExecutable") == LauncherShim::executableName ||
         Text::hasSuffix(item.bundleIdentifier, LauncherShim::identifierSuffix);
}

AppDedupeItemKind kindOf(const ReadOnlyPlatform& platform, const InfoPlist::Texts& texts,
                         const AppDedupeItem& item) {
  if (isLauncher(texts, item)) return AppDedupeItemKind::quarnLauncher;
  return platform.files.isSymbolicLink(Path(item.path)) ? AppDedupeItemKind::symlink
                                                        : AppDedupeItemKind::realApp;
}

bool isApplicationsFolder(const ReadOnlyPlatform& platform, const Path& folder) {
  const Path ofUser = platform.files.standardized(platform.places.home().appending("Applications"));
  return folder == Path("/Applications") || Text::equal(folder.text(), ofUser.text());
}

/// Looks for a link before it ends at a folder for applications, so that one which is itself a link counts.
bool isInsideSymlinkedFolder(const ReadOnlyPlatform& platform, const Path& bundle) {
  for (Path folder = platform.files.standardized(bundle).parent(); folder.parent() != folder;
       folder = folder.parent()) {
    if (platform.files.isSymbolicLink(folder)) return true;
    if (isApplicationsFolder(platform, folder)) return false;
  }
  return false;
}

}  // namespace

std::optional<AppDedupeItem> describe(const ReadOnlyPlatform& platform, const Path& bundle) {
  const auto texts = InfoPlist::read(platform, bundle);
  if (!texts) return std::nullopt;
  auto identifier = nonEmptyText(*texts, "CFBundleIdentifier");
  if (!identifier) return std::nullopt;
  AppDedupeItem item{.path = bundle.text(),
                     .displayName = InfoPlist::name(*texts).value_or(bundle.nameWithoutExtension()),
                     .bundleIdentifier = *identifier,
                     .effectiveBundleIdentifier = LauncherShim::withoutIdentifierSuffix(*identifier),
                     .targetPath = launcherTarget(platform, bundle),
                     .insideSymlinkedFolder = isInsideSymlinkedFolder(platform, bundle)};
  item.kind = kindOf(platform, *texts, item);
  return item;
}

int score(const AppDedupeItem& item) {
  int sum = 0;
  if (canReplaceLaunchers(item)) sum += 100;
  if (item.kind == AppDedupeItemKind::quarnLauncher) sum += 50;
  if (item.path.starts_with("/Applications/")) sum += 10;
  if (item.insideSymlinkedFolder) sum -= 40;
  if (item.path.starts_with("/Volumes/")) sum -= 30;
  return sum;
}

bool canReplaceLaunchers(const AppDedupeItem& keep) {
  return keep.kind == AppDedupeItemKind::realApp && !keep.insideSymlinkedFolder;
}

bool isDuplicate(const ReadOnlyPlatform& platform, const AppDedupeItem& item, const AppDedupeItem& keep) {
  if (item.path == keep.path || item.kind != AppDedupeItemKind::quarnLauncher || !canReplaceLaunchers(keep))
    return false;
  // A link can lead to a launcher, and is still a link.
  if (platform.files.isSymbolicLink(Path(item.path))) return false;
  if (!item.targetPath || Text::equal(*item.targetPath, keep.path)) return true;
  // Where a relative path starts depends on who reads it, so it may be of something that exists.
  const Path target(*item.targetPath);
  return target.isAbsolute() && !platform.files.exists(target);
}

}  // namespace quarn::AppDedupeRules
