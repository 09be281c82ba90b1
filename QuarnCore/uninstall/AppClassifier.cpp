#include "QuarnCore/uninstall/AppClassifier.h"

#include "Platform/Text.h"
#include "QuarnCore/discovery/AppScanner.h"
#include "QuarnCore/discovery/LauncherShim.h"
#include "QuarnCore/foundation/AppStorageNames.h"

namespace quarn::AppClassifier {
namespace {

constexpr std::size_t longestDeveloper = 80;

bool isInUserApplications(const Places& places, const std::string& path) {
  return Text::hasPrefix(path, places.home().text() + "/Applications");
}

bool isInFolderForMovedItems(const std::string& path) {
  return path.find("/" + std::string(AppStorageNames::externalRoot) + "/") != std::string::npos;
}

}  // namespace

AppClassification classify(const ReadOnlyPlatform& platform, const Path& bundle,
                           const InfoPlist::Texts& texts, const std::optional<std::string>& symlinkTarget) {
  const std::string& path = bundle.text();
  if (Text::hasPrefix(path, "/System/")) return {.kind = AppRecordKind::systemRisky};
  if (symlinkTarget) return {.kind = AppRecordKind::symlink, .externalTarget = symlinkTarget};
  if (LauncherShim::isExternalAppLauncher(platform, bundle, texts)) {
    return {.kind = AppRecordKind::quarnLauncher,
            .isLauncher = true,
            .externalTarget = LauncherShim::recordedTarget(platform, bundle)};
  }
  if (isInFolderForMovedItems(path)) return {.kind = AppRecordKind::externalTarget};
  if (isInUserApplications(platform.places, path)) return {.kind = AppRecordKind::userApplications};
  if (AppFlags::isMacAppStore(platform, bundle)) return {.kind = AppRecordKind::macAppStore};
  return {.kind = AppRecordKind::normal};
}

std::optional<std::string> developer(const InfoPlist::Texts& texts) {
  for (const char* key : {"CFBundleGetInfoString", "NSHumanReadableCopyright"}) {
    const std::string text = InfoPlist::value(texts, key).value_or("");
    if (text.empty()) continue;
    const std::string name =
        Text::trimmingWhitespaceAndNewlines(Text::replacing(Text::replacing(text, "Copyright", ""), "©", ""));
    return Text::prefix(name, longestDeveloper);
  }
  return std::nullopt;
}

}  // namespace quarn::AppClassifier
