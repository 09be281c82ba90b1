#include "QuarnCore/discovery/LauncherShim.h"

#include "Platform/PathText.h"
#include "Platform/Text.h"

namespace quarn::LauncherShim {

Path targetFile(const Path& bundle) {
  return bundle.appending("Contents/Resources/ExternalAppTarget.txt");
}

Path executable(const Path& bundle) {
  return bundle.appending("Contents/MacOS").appending(executableName);
}

bool isExternalAppLauncher(const ReadOnlyPlatform& platform, const Path& bundle,
                           const InfoPlist::Texts& texts) {
  if (platform.files.exists(targetFile(bundle))) return true;
  if (InfoPlist::value(texts, "CFBundleExecutable") == executableName) return true;
  return Text::hasSuffix(InfoPlist::value(texts, "CFBundleIdentifier").value_or(""), identifierSuffix);
}

std::string withoutIdentifierSuffix(std::string_view identifier) {
  return Text::replacing(identifier, identifierSuffix, "");
}

std::optional<std::string> targetText(std::string_view bytes) {
  const auto text = Text::decodingFile(bytes);
  if (!text) return std::nullopt;
  return Text::trimmingWhitespaceAndNewlines(*text);
}

std::optional<std::string> recordedTarget(const ReadOnlyPlatform& platform, const Path& bundle) {
  const auto bytes = platform.files.read(targetFile(bundle));
  return bytes ? targetText(*bytes) : std::nullopt;
}

std::optional<Path> target(const ReadOnlyPlatform& platform, const Path& bundle) {
  const auto text = recordedTarget(platform, bundle);
  if (!text || text->empty()) return std::nullopt;
  const Path path = platform.files.standardized(PathText::fileURL(platform.places, *text));
  if (!platform.files.exists(path)) return std::nullopt;
  return path;
}

}  // namespace quarn::LauncherShim
