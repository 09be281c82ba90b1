#include "QuarnCore/launchers/LauncherAppBuilder.h"

#include "Platform/CocoaError.h"
#include "Platform/Text.h"
#include "Platform/UUID.h"
#include "QuarnCore/discovery/LauncherShim.h"
#include "QuarnCore/foundation/CommandRunner.h"
#include "QuarnCore/foundation/FileStash.h"
#include "QuarnCore/foundation/Turn.h"
#include "QuarnCore/launchers/LauncherBundle.h"

namespace quarn::LauncherAppBuilder {
namespace {

const std::string codesign = "/usr/bin/codesign";
const std::string lsregister =
    "/System/Library/Frameworks/CoreServices.framework/Frameworks/LaunchServices.framework/Support/"
    "lsregister";

bool stands(const ReadOnlyPlatform& platform, const Path& item) {
  return platform.files.exists(item) || platform.files.isSymbolicLink(item);
}

/// Compares the whole file: one that ends with a line feed wasn't written here, and is replaced.
bool opens(const ReadOnlyPlatform& platform, const Path& launcher, const Path& target) {
  const auto bytes = platform.files.read(LauncherShim::targetFile(launcher));
  const auto text = bytes ? Text::decodingFile(*bytes) : std::nullopt;
  return text && Text::equal(*text, target.text()) &&
         platform.files.exists(LauncherShim::executable(launcher));
}

/// An item that couldn't be moved aside is left alone.
void moveAside(Platform& platform, const Path& launcher) {
  FileStash::moveAside(platform, launcher, "launcher-replace");
  if (stands(platform, launcher))
    throw CocoaError::fromCode(CocoaError::Operation::save, CocoaErrorCode::fileWriteFileExists, launcher);
}

/// Builds the launcher under a hidden name and renames it when it is complete. So a run that is killed leaves
/// nothing at the launcher's path, and the next check finds that the launcher is missing.
void build(Platform& platform, const Path& sourceApp, const Path& launcher, const Path& target) {
  const Path folder = launcher.parent();
  platform.files.createFolder(folder).orThrow();
  const Path unfinished = folder.appending(".quarn-new-launcher-" + UUID::make().substr(0, 8));
  platform.files.claim(unfinished, FileKind::folder).orThrow();
  try {
    LauncherBundle::fill(platform, unfinished, sourceApp, launcher.nameWithoutExtension(), target);
    // Until now it was accessible only to its owner.
    platform.files.setPermissions(unfinished, 0755).orThrow();
    platform.files.rename(unfinished, launcher).orThrow();
  } catch (const LocalizedError&) {
    FileStash::moveAside(platform, unfinished, "launcher-unfinished");
    throw;
  }
}

/// An ad-hoc signature. A launcher without one still opens for the user who asked for it.
void sign(Platform& platform, const Path& launcher, const InstallerRunReporter& reporter) {
  const auto result =
      CommandRunner::run(platform, codesign, {"--force", "--sign", "-", "--timestamp=none", launcher.text()});
  if (result.succeeded()) {
    reporter.log("signed-launcher\t" + launcher.text());
  } else {
    reporter.log("sign-launcher-warning\t" + result.standardError);
  }
}

/// Tells the system of the launcher, so that Spotlight and the Finder show it at once.
void registerLauncher(Platform& platform, const Path& launcher, const InstallerRunReporter& reporter) {
  if (!platform.files.exists(Path(lsregister))) return;
  CommandRunner::run(platform, lsregister, {"-f", launcher.text()});
  reporter.log("registered-launcher\t" + launcher.text());
}

}  // namespace

void install(Platform& platform, const Path& sourceApp, const Path& launcher, const Path& target,
             const InstallerRunReporter& reporter) {
  const Turn turn(platform);
  if (stands(platform, launcher)) {
    if (opens(platform, launcher, target)) {
      reporter.log("reuse-launcher\t" + launcher.text());
      registerLauncher(platform, launcher, reporter);
      return;
    }
    reporter.log("stash-existing-launcher\t" + launcher.text());
    moveAside(platform, launcher);
  }
  build(platform, sourceApp, launcher, target);
  reporter.log("launcher-app\t" + launcher.text() + "\t" + target.text());
  sign(platform, launcher, reporter);
  registerLauncher(platform, launcher, reporter);
}

}  // namespace quarn::LauncherAppBuilder
