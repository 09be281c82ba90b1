#include "QuarnCore/launchers/LauncherAppBuilder.h"

#include "Platform/CocoaError.h"
#include "Platform/Text.h"
#include "Platform/UUID.h"
#include "QuarnCore/discovery/LauncherShim.h"
#include "QuarnCore/foundation/FileStash.h"
#include "QuarnCore/foundation/Turn.h"
#include "QuarnCore/launchers/LauncherBundle.h"
#include "QuarnCore/launchers/LauncherTools.h"

namespace quarn::LauncherAppBuilder {
namespace {

bool stands(const ReadOnlyPlatform& platform, const Path& item) {
  return platform.files.exists(item) || platform.files.isSymbolicLink(item);
}

/// Compares the whole file: one that ends with a line feed wasn't written here, and is replaced. So is a
/// launcher into which something was installed.
bool opens(const ReadOnlyPlatform& platform, const Path& launcher, const Path& target) {
  const auto bytes = platform.files.read(LauncherShim::targetFile(launcher));
  const auto text = bytes ? Text::decodingFile(*bytes) : std::nullopt;
  return text && Text::equal(*text, target.text()) &&
         platform.files.exists(LauncherShim::executable(launcher)) &&
         LauncherBundle::isAllThatIsIn(platform, launcher);
}

/// An item that couldn't be moved aside is left alone.
void moveAside(Platform& platform, const Path& launcher) {
  FileStash::moveAside(platform, launcher, "launcher-replace");
  if (stands(platform, launcher))
    throw CocoaError::fromCode(CocoaError::Operation::save, CocoaErrorCode::fileWriteFileExists, launcher);
}

constexpr const char* unfinishedName = ".quarn-new-launcher-";

/// The permissions of a launcher, which it gets last: until then it is accessible only to its owner.
constexpr std::uint32_t whenComplete = 0755;

bool isComplete(const ReadOnlyPlatform& platform, const Path& bundle) {
  const auto attributes = platform.files.attributes(bundle);
  return attributes && attributes->permissions == whenComplete;
}

/// Returns a complete launcher for the target that a killed run left under its hidden name.
std::optional<Path> leftBehind(const ReadOnlyPlatform& platform, const Path& folder, const Path& target) {
  for (const std::string& name : platform.files.list(folder, Hidden::included).valueOr({})) {
    const Path bundle = folder.appending(name);
    if (name.starts_with(unfinishedName) && opens(platform, bundle, target) && isComplete(platform, bundle))
      return bundle;
  }
  return std::nullopt;
}

/// Builds the launcher under a hidden name. So a run that is killed leaves nothing half-built at the
/// launcher's path, and what stands there is moved aside only when there is something to take its place.
Path build(Platform& platform, const Path& sourceApp, const Path& launcher, const Path& target) {
  const Path folder = launcher.parent();
  platform.files.createFolder(folder).orThrow();
  const Path unfinished = folder.appending(unfinishedName + UUID::make().substr(0, 8));
  platform.files.claim(unfinished, FileKind::folder).orThrow();
  try {
    LauncherBundle::fill(platform, unfinished, sourceApp, launcher.nameWithoutExtension(), target);
    platform.files.setPermissions(unfinished, whenComplete).orThrow();
    return unfinished;
  } catch (const LocalizedError&) {
    FileStash::moveAside(platform, unfinished, "launcher-unfinished");
    throw;
  }
}

/// Puts a complete launcher in its place. What stands there is moved aside.
void takePlace(Platform& platform, const Path& unfinished, const Path& launcher,
               const InstallerRunReporter& reporter) {
  try {
    if (stands(platform, launcher)) {
      reporter.log("stash-existing-launcher\t" + launcher.text());
      moveAside(platform, launcher);
    }
    platform.files.rename(unfinished, launcher).orThrow();
  } catch (const LocalizedError&) {
    // Where nothing stands any more the launcher waits for the next run, as after a kill.
    if (stands(platform, launcher)) FileStash::moveAside(platform, unfinished, "launcher-unfinished");
    throw;
  }
}

}  // namespace

void install(Platform& platform, const Path& sourceApp, const Path& launcher, const Path& target,
             const InstallerRunReporter& reporter) {
  const Turn turn(platform);
  if (stands(platform, launcher) && opens(platform, launcher, target)) {
    reporter.log("reuse-launcher\t" + launcher.text());
    LauncherTools::registerLauncher(platform, launcher, reporter);
    return;
  }
  const auto finishedBefore = leftBehind(platform, launcher.parent(), target);
  const Path unfinished = finishedBefore ? *finishedBefore : build(platform, sourceApp, launcher, target);
  takePlace(platform, unfinished, launcher, reporter);
  reporter.log("launcher-app\t" + launcher.text() + "\t" + target.text());
  LauncherTools::sign(platform, launcher, reporter);
  LauncherTools::registerLauncher(platform, launcher, reporter);
}

bool wasBrokenOff(const ReadOnlyPlatform& platform, const Path& launcher, const Path& target) {
  return !stands(platform, launcher) && leftBehind(platform, launcher.parent(), target);
}

}  // namespace quarn::LauncherAppBuilder
