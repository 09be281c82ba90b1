#include "QuarnCore/discovery/LauncherShim.h"

#include "Platform/PathText.h"
#include "Platform/Text.h"

namespace quarn::LauncherShim {
namespace {

Path targetFile(const Path& bundle) {
  return bundle.appending("Contents/Resources/ExternalAppTarget.txt");
}

}  // namespace

bool isExternalAppLauncher(const ReadOnlyPlatform& platform, const Path& bundle,
                           const InfoPlist::Texts& texts) {
  if (platform.files.exists(targetFile(bundle))) return true;
  if (InfoPlist::value(texts, "CFBundleExecutable") == "ExternalAppLauncher") return true;
  return Text::hasSuffix(InfoPlist::value(texts, "CFBundleIdentifier").value_or(""), ".externallauncher");
}

std::optional<Path> target(const ReadOnlyPlatform& platform, const Path& bundle) {
  const auto bytes = platform.files.read(targetFile(bundle));
  const auto text = bytes ? Text::decodingFile(*bytes) : std::nullopt;
  if (!text) return std::nullopt;
  const std::string trimmed = Text::trimmingWhitespaceAndNewlines(*text);
  if (trimmed.empty()) return std::nullopt;
  const Path path = platform.files.standardized(PathText::fileURL(platform.places, trimmed));
  if (!platform.files.exists(path)) return std::nullopt;
  return path;
}

}  // namespace quarn::LauncherShim
