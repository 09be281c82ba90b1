#include "QuarnCore/launchers/LauncherBundle.h"

#include <optional>

#include "Platform/PathText.h"
#include "Platform/PropertyList.h"
#include "QuarnCore/discovery/InfoPlist.h"
#include "QuarnCore/discovery/LauncherShim.h"
#include "QuarnCore/foundation/FileStash.h"

namespace quarn::LauncherBundle {
namespace {

using Texts = InfoPlist::Texts;

bool isRegularFile(const ReadOnlyPlatform& platform, const Path& item) {
  const auto attributes = platform.files.attributes(platform.files.resolvingLinks(item));
  return attributes && attributes->kind == FileKind::regular;
}

/// A binary property list can hold a NUL in a text, but the launcher's list in XML can't.
std::optional<std::string> value(const Texts& metadata, const std::string& key) {
  const auto text = InfoPlist::value(metadata, key);
  if (!text || text->find('\0') != std::string::npos) return std::nullopt;
  return text;
}

/// Returns the file name of the application's icon, if it has one. A name with a slash could lead out of the
/// bundle, so it isn't one.
std::optional<std::string> iconName(const ReadOnlyPlatform& platform, const Texts& metadata,
                                    const Path& resources) {
  auto name = value(metadata, "CFBundleIconFile");
  if (!name || name->find('/') != std::string::npos) return std::nullopt;
  if (!name->ends_with(".icns")) *name += ".icns";
  if (!isRegularFile(platform, resources.appending(*name))) return std::nullopt;
  return name;
}

/// Copies the icon and returns its file name. If the copy fails, the launcher names an icon that it lacks.
std::optional<std::string> copyIcon(Platform& platform, const Texts& metadata, const Path& sourceApp,
                                    const Path& bundle) {
  const Path resources = sourceApp.appending("Contents/Resources");
  const auto name = iconName(platform, metadata, resources);
  if (!name) return std::nullopt;
  // The file itself, because a link would be copied as a link.
  const Path icon = platform.files.resolvingLinks(resources.appending(*name));
  platform.files.copy(icon, bundle.appending("Contents/Resources").appending(*name)).orIgnore();
  return name;
}

Texts infoTexts(const Texts& metadata, const std::string& name, const std::optional<std::string>& icon) {
  const auto valueOr = [&metadata](const char* key, const std::string& otherwise) {
    return value(metadata, key).value_or(otherwise);
  };
  const std::string displayName = valueOr("CFBundleDisplayName", valueOr("CFBundleName", name));
  Texts texts = {
      {"CFBundleExecutable", LauncherShim::executableName},
      {"CFBundleIdentifier",
       valueOr("CFBundleIdentifier", "app.external.launcher") + LauncherShim::identifierSuffix},
      {"CFBundleInfoDictionaryVersion", "6.0"},
      {"CFBundleName", displayName},
      {"CFBundleDisplayName", displayName},
      {"CFBundlePackageType", "APPL"},
      {"CFBundleShortVersionString", valueOr("CFBundleShortVersionString", "1.0")},
      {"CFBundleVersion", valueOr("CFBundleVersion", "1")},
      {"LSMinimumSystemVersion", "10.13"},
  };
  if (icon) texts["CFBundleIconFile"] = *icon;
  return texts;
}

/// The program is beside this one. Started by a bare name, this one would look in the current folder; so what
/// is on the PATH is a script that starts it by its path.
std::optional<Path> besideThisProgram(const ReadOnlyPlatform& platform) {
  const std::string invokedAs = platform.places.invokedAs();
  if (invokedAs.empty()) return std::nullopt;
  const Path started = PathText::fileURL(platform.places, invokedAs);
  const Path beside = started.parent().appending("external-app-launcher");
  if (!isRegularFile(platform, beside)) return std::nullopt;
  return beside;
}

Path launcherProgram(const ReadOnlyPlatform& platform) {
  if (const auto beside = besideThisProgram(platform)) return *beside;
  const auto variable = platform.places.environment("QUARN_LAUNCHER_BINARY");
  const Path named = PathText::fileURL(platform.places, variable.value_or(""));
  if (!variable || !isRegularFile(platform, named))
    throw PlatformError("launcher", 1, "Launcher binary is missing.");
  return named;
}

void copyProgram(Platform& platform, const Path& bundle) {
  const Path program = platform.files.resolvingLinks(launcherProgram(platform));
  const Path copy = LauncherShim::executable(bundle);
  FileStash::moveAside(platform, copy, "launcher-binary");
  platform.files.copy(program, copy).orThrow();
  platform.files.setPermissions(copy, 0755).orThrow();
}

/// Looks for an item that isn't part of a launcher. The icon keeps the name that it has in the application.
class ForeignItemVisitor : public WalkVisitor {
 public:
  WalkStep visit(const WalkItem& item) override {
    found = !isPart(item.relativePath());
    return found ? WalkStep::stop : WalkStep::proceed;
  }
  WalkStep failed(const Path&, const PlatformError&) override {
    found = true;
    return WalkStep::stop;
  }

  bool found = false;

 private:
  static bool isPart(std::string_view path) {
    for (const char* part : {"Contents", "Contents/Info.plist", "Contents/PkgInfo", "Contents/MacOS",
                             "Contents/MacOS/ExternalAppLauncher", "Contents/Resources",
                             "Contents/Resources/ExternalAppTarget.txt", "Contents/_CodeSignature",
                             "Contents/_CodeSignature/CodeResources"}) {
      if (path == part) return true;
    }
    const Path item(path);
    return item.parent() == Path("Contents/Resources") && item.extension() == "icns";
  }
};

}  // namespace

bool isAllThatIsIn(const ReadOnlyPlatform& platform, const Path& bundle) {
  ForeignItemVisitor visitor;
  platform.files.walk(bundle, Hidden::included, visitor);
  return !visitor.found;
}

void fill(Platform& platform, const Path& bundle, const Path& sourceApp, const std::string& name,
          const Path& target) {
  platform.files.createFolder(bundle.appending("Contents/MacOS")).orThrow();
  platform.files.createFolder(bundle.appending("Contents/Resources")).orThrow();
  const Texts metadata = InfoPlist::read(platform, sourceApp).value_or(Texts());
  const auto icon = copyIcon(platform, metadata, sourceApp, bundle);
  const std::string info = PropertyList::xml(infoTexts(metadata, name, icon));
  platform.files.writeAtomically(bundle.appending("Contents/Info.plist"), info).orThrow();
  copyProgram(platform, bundle);
  platform.files.writeAtomically(LauncherShim::targetFile(bundle), target.text()).orThrow();
  platform.files.writeAtomically(bundle.appending("Contents/PkgInfo"), "APPL????").orThrow();
}

}  // namespace quarn::LauncherBundle
