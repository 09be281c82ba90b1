#include "QuarnCore/installer/AppInstallEngine.h"

#include <vector>

#include "Platform/CocoaError.h"
#include "QuarnCore/discovery/ProtectedPlaces.h"
#include "QuarnCore/foundation/FileStash.h"
#include "QuarnCore/foundation/Sighting.h"
#include "QuarnCore/foundation/Turn.h"
#include "QuarnCore/installer/AppsFolder.h"
#include "QuarnCore/installer/InstallAction.h"
#include "QuarnCore/launchers/LauncherAppBuilder.h"
#include "QuarnCore/move/ChosenVolume.h"
#include "QuarnCore/move/MountPoints.h"
#include "QuarnCore/move/MoveVerifier.h"
#include "QuarnCore/move/MoverError.h"

namespace quarn::AppInstallEngine {
namespace {

constexpr const char* errorDomain = "install-app";
constexpr int notLikeItsSource = 2;

/// Where everything is for one application.
struct Places {
  Path source;
  Path appsFolder;
  Path destination;
  Path launcher;
};

Places placesOf(const Path& source, const InstallerOption& option, const Path& targetDrive) {
  const Path linkRoot(option.applicationLinkRoot);
  return {.source = source,
          .appsFolder = AppsFolder::on(targetDrive, option.externalRootName),
          .destination = destination(source, option, targetDrive),
          .launcher = linkRoot.appending(source.lastComponent())};
}

ChosenVolume mountedVolume(const ReadOnlyPlatform& platform, const Path& targetDrive) {
  if (!targetDrive.isAbsolute()) throw MoveRefused("It isn’t known which drive to install onto.");
  return ChosenVolume::ofDrive(platform, targetDrive);
}

/// Found before anything is set aside for its copy.
void requireSource(const ReadOnlyPlatform& platform, const Places& places) {
  if (platform.files.exists(places.source) || platform.files.isSymbolicLink(places.source)) return;
  throw CocoaError::fromCode(CocoaError::Operation::copy, CocoaErrorCode::fileNoSuchFile, places.source,
                             places.destination);
}

/// Another run may have moved the application to the drive: its link or launcher isn't what was to be
/// installed.
void requireUnchanged(const ReadOnlyPlatform& platform, const Path& source,
                      const Result<FileAttributes>& seen) {
  const auto found = platform.files.attributes(source);
  if (found && seen && found->identity != seen->identity)
    throw MoveRefused("“" + source.lastComponent() + "” was replaced by another run meanwhile.");
}

/// A relative folder in an option would be another one for each current folder, and "~" isn't expanded.
void requireLinkRoot(const InstallerOption& option) {
  if (!Path(option.applicationLinkRoot).isAbsolute())
    throw MoveRefused("The folder for launchers isn’t an absolute path: " + option.applicationLinkRoot);
}

void requireOnDrive(const ReadOnlyPlatform& platform, const Path& folder, const Path& targetDrive) {
  if (AppsFolder::isOn(platform, folder, targetDrive)) return;
  throw MoveRefused("The folder for applications isn’t on the drive: " +
                    sight(platform.files, folder).leadsTo.text());
}

void requireApart(const Sighting& one, const Sighting& other) {
  if (one.isAtOrIn(other))
    throw MoveRefused("“" + one.spelled.text() + "” lies in “" + other.spelled.text() + "”.");
}

/// What is set aside takes everything in it along.
void requireApart(const ReadOnlyPlatform& platform, const Places& places) {
  const Sighting source = sightItself(platform.files, places.source).orThrow();
  const Sighting destination = sightItself(platform.files, places.destination).orThrow();
  const Sighting launcher = sightItself(platform.files, places.launcher).orThrow();
  requireApart(launcher, destination);
  requireApart(destination, launcher);
  // An application that is on the drive already is only given a launcher.
  if (source.leadsTo == destination.leadsTo) return;
  requireApart(source, destination);
  requireApart(destination, source);
}

void requireNothingElseInside(const ReadOnlyPlatform& platform, const Places& places) {
  const ProtectedPlaces protectedPlaces(platform);
  for (const Path& place : {places.source, places.destination, places.launcher}) {
    // A link is taken by itself, whatever it leads to.
    if (platform.files.isSymbolicLink(place) || !platform.files.exists(place)) continue;
    MountPoints::refuseInside(platform, place);
    if (protectedPlaces.isOneOrAroundOne(sight(platform.files, place).orThrow()))
      throw MoveRefused("“" + place.text() + "” belongs where it is.");
  }
}

/// Collects the folders and files of an item, each behind the folder that holds it.
class ItemsWithAttributes : public WalkVisitor {
 public:
  WalkStep visit(const WalkItem& item) override {
    if (item.kind() == FileKind::folder || item.kind() == FileKind::regular)
      paths.emplace_back(item.relativePath());
    return WalkStep::proceed;
  }
  WalkStep failed(const Path&, const PlatformError&) override { return WalkStep::proceed; }

  std::vector<std::string> paths;
};

/// A run that was killed may have left a copy that lacks nothing but modes and times, which a copy gets last,
/// and that hasn't reached the drive.
Result<void> finish(Platform& platform, const Places& places) {
  if (sight(platform.files, places.source).leadsTo == sight(platform.files, places.destination).leadsTo)
    return {};
  ItemsWithAttributes items;
  platform.files.walk(places.source, Hidden::included, items);
  // From the innermost out: a folder may forbid what is still to be done inside it.
  for (auto path = items.paths.rbegin(); path != items.paths.rend(); ++path) {
    const Path copy = places.destination.appending(*path);
    if (auto copied = platform.files.copyAttributes(places.source.appending(*path), copy); !copied)
      return copied;
  }
  if (auto copied = platform.files.copyAttributes(places.source, places.destination); !copied) return copied;
  return platform.files.flush(places.destination);
}

/// Returns why what stands at the destination can't be used; nothing if it is a good copy, which is like its
/// source then.
std::optional<std::string> reasonToReplace(Platform& platform, const Places& places) {
  if (platform.files.isSymbolicLink(places.destination)) return "symlink destination";
  if (auto reason = MoveVerifier::failureReason(platform, places.source, places.destination)) return reason;
  if (const auto finished = finish(platform, places); !finished)
    return finished.error().localizedDescription();
  return std::nullopt;
}

/// Returns whether a good copy is there already. Otherwise the path is free, if what stood there could be
/// moved.
bool reuses(Platform& platform, const Places& places, const InstallerRunReporter& reporter) {
  const Path& destination = places.destination;
  if (!platform.files.exists(destination) && !platform.files.isSymbolicLink(destination)) return false;
  const auto reason = reasonToReplace(platform, places);
  if (!reason) {
    reporter.log(InstallAction::line("reuse-app", {destination.text()}));
    return true;
  }
  reporter.log(InstallAction::line("stash-existing-app", {destination.text(), *reason}));
  FileStash::moveAside(platform, destination, "install-conflict");
  return false;
}

/// Returns what is wrong with the copy, after it has reached the drive: writing out can take minutes, and
/// what changes meanwhile is noticed.
std::optional<std::string> faultOf(Platform& platform, const Places& places) {
  const auto flushed = platform.files.flush(places.destination);
  if (auto reason = MoveVerifier::failureReason(platform, places.source, places.destination)) return reason;
  if (!flushed) return flushed.error().localizedDescription();
  return std::nullopt;
}

/// Another user's run may meanwhile have put its own copy there.
bool isStill(const ReadOnlyPlatform& platform, const Path& item, const Result<FileAttributes>& made) {
  const auto found = platform.files.attributes(item);
  return found && made && found->identity == made->identity;
}

void copy(Platform& platform, const Places& places, const InstallerRunReporter& reporter) {
  const Path& destination = places.destination;
  reporter.log(InstallAction::line("copy-app", {places.source.text(), destination.text()}));
  platform.files.copy(places.source, destination).orThrow();
  const auto made = platform.files.attributes(destination);
  reporter.log(InstallAction::line("verify-app", {destination.text()}));
  const auto fault = faultOf(platform, places);
  if (!fault) return;
  if (isStill(platform, destination, made)) FileStash::moveAside(platform, destination, "verify-failed");
  throw PlatformError(errorDomain, notLikeItsSource, *fault);
}

}  // namespace

Path destination(const Path& source, const InstallerOption& option, const Path& targetDrive) {
  return AppsFolder::on(targetDrive, option.externalRootName).appending(source.lastComponent());
}

std::string install(Platform& platform, const Path& source, const InstallerOption& option,
                    const Path& targetDrive, const InstallerRunReporter& reporter) {
  const auto seen = platform.files.attributes(source);
  const Turn turn(platform, reporter.waiting);
  if (turn.hadToWait()) requireUnchanged(platform, source, seen);
  requireLinkRoot(option);
  const Places places = placesOf(source, option, targetDrive);
  requireSource(platform, places);
  const ChosenVolume volume = mountedVolume(platform, targetDrive);
  requireOnDrive(platform, places.appsFolder, targetDrive);
  requireApart(platform, places);
  requireNothingElseInside(platform, places);
  platform.files.createFolder(places.appsFolder).orThrow();
  volume.requireHolds(platform, places.appsFolder);
  if (!reuses(platform, places, reporter)) copy(platform, places, reporter);
  // Once more, directly before the launcher takes a place: copying and comparing may have taken minutes.
  volume.requireHolds(platform, places.appsFolder);
  LauncherAppBuilder::install(platform, places.destination, places.launcher, places.destination, reporter);
  const std::string action = InstallAction::installedApp(places.launcher, places.destination);
  reporter.log(action);
  return action;
}

bool wasBrokenOff(const ReadOnlyPlatform& platform, const Path& source, const InstallerOption& option,
                  const Path& targetDrive) {
  const Places places = placesOf(source, option, targetDrive);
  return platform.files.isFolder(places.destination) && places.launcher == source &&
         LauncherAppBuilder::wasBrokenOff(platform, places.launcher, places.destination);
}

}  // namespace quarn::AppInstallEngine
