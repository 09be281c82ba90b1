#include "Platform/PathText.h"
#include "QuarnCLI/Console.h"
#include "QuarnCLI/CurrentFolder.h"
#include "QuarnCLI/backup/BackupCommands.h"
#include "QuarnCore/backup/BackupService.h"
#include "QuarnCore/foundation/Turn.h"

namespace quarn::BackupCommands {
namespace {

constexpr const char* sourceRoot = "QUARN_SOURCE_ROOT";

void warn(const std::string& sentence) {
  Console::writeError("warning\t" + sentence + "\n");
}

/// A variable that names nothing is a mistake, though no error.
Path namedSource(const ReadOnlyPlatform& platform, const std::string& name) {
  if (!Path(name).isAbsolute()) CurrentFolder::required(platform);
  const Path source = PathText::fileURL(platform.places, name);
  if (!platform.files.exists(source))
    warn("Nothing is there to back up: " + source.text() + " (" + sourceRoot + ")");
  return source;
}

/// Quarn's own sources and application.
std::vector<Path> defaultSources(const ReadOnlyPlatform& platform) {
  const auto named = platform.places.environment(sourceRoot);
  return {named ? namedSource(platform, *named) : CurrentFolder::required(platform),
          Path("/Applications/Quarn.app")};
}

ExitStatus run(const Invocation& invocation) {
  Platform& platform = invocation.platform;
  const Path drive = driveOf(platform.places, invocation.args);
  // What another run moves meanwhile would be copied in part.
  const Turn turn(platform, Console::tellOfWaiting);
  const BackupRecord record = BackupService::create(platform, defaultSources(platform), drive, warn);
  Console::print("backup\t" + record.id + "\t" + record.rootPath);
  return ExitStatus::success;
}

}  // namespace

constinit const Command create{
    .words = "backup create",
    .purpose = "copies quarn's own sources and application to a dated folder",
    .flags = flags,
    .outcomes = {.success = "made",
                 .failure = "no drive given, it isn't mounted, or something can't be copied or renamed"},
    .handler = run,
    .usageLine = "quarn backup create --target-drive <path>",
};

}  // namespace quarn::BackupCommands
