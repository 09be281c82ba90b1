#include "QuarnCLI/move/MoveArgs.h"

#include "Platform/PathText.h"
#include "Platform/Text.h"
#include "QuarnCLI/CLIError.h"
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

std::optional<std::string> value(const std::string& name, const CLIArgs& args) {
  return args.value("--" + name);
}

bool includesData(const CLIArgs& args) {
  return !args.contains("--no-data");
}

DriveInfo resolveDrive(const ReadOnlyPlatform& platform, const CLIArgs& args) {
  const auto wanted = value("target-drive", args);
  return wanted ? driveNamed(platform, *wanted) : firstExternalWritable(platform);
}

}  // namespace quarn::MoveArgs
