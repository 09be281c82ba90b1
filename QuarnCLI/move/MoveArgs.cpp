#include "QuarnCLI/move/MoveArgs.h"

#include "Platform/PathText.h"
#include "Platform/Text.h"
#include "QuarnCLI/CLIError.h"
#include "QuarnCLI/move/MoveFlags.h"
#include "QuarnCore/discovery/DriveScanner.h"

namespace quarn::MoveArgs {
namespace {

DriveInfo driveNamed(const ReadOnlyPlatform& platform, const std::string& wanted) {
  const std::string path = PathText::expandingTilde(platform.places, wanted);
  for (const DriveInfo& drive : DriveScanner::scan(platform)) {
    if (Text::equal(drive.mountPath.text(), path) || Text::equal(drive.name, wanted)) return drive;
  }
  throw CLIError("Target drive not found: " + wanted + ". Run `move drives` to list mounts.");
}

DriveInfo firstExternalWritable(const ReadOnlyPlatform& platform) {
  for (const DriveInfo& drive : DriveScanner::scan(platform)) {
    if (!drive.isInternal && drive.isWritable) return drive;
  }
  throw CLIError("No external writable drive mounted. Pass --target-drive </Volumes/X>.");
}

}  // namespace

QueueChoices queueChoices(const CLIArgs& args) {
  return {.targetDrive = args.value(MoveFlags::targetDrive),
          .includesData = !args.contains(MoveFlags::noData)};
}

MoveSelection::Choices selectionChoices(const CLIArgs& args) {
  return {.includesProtected = args.contains(MoveFlags::includeProtected),
          .includesRisky = args.contains(MoveFlags::includeRisky),
          .includesRunning = args.contains(MoveFlags::includeRunning)};
}

RunChoices runChoices(const CLIArgs& args) {
  return {.asksFirst = !args.contains(MoveFlags::yes),
          .showsProgress = args.contains(MoveFlags::progress),
          .quitsRunning = args.contains(MoveFlags::quitRunning)};
}

DriveInfo resolveDrive(const ReadOnlyPlatform& platform, const std::optional<std::string>& wanted) {
  return wanted ? driveNamed(platform, *wanted) : firstExternalWritable(platform);
}

}  // namespace quarn::MoveArgs
