#include "QuarnCLI/backup/BackupCommands.h"

#include "Platform/PathText.h"
#include "QuarnCLI/Groups.h"

namespace quarn {
namespace {

constexpr const Command* commands[] = {&BackupCommands::create, &BackupCommands::list};

}  // namespace

Path BackupCommands::driveOf(const Places& places, const CLIArgs& args) {
  return PathText::fileURL(places, args.requiredPath(targetDrive));
}

constinit const Group backupGroup{
    .words = "backup",
    .missingAction = "Missing backup action.",
    .unknownAction = "Unknown backup action: ",
    .commands = commands,
    .requiredPath = &BackupCommands::targetDrive,
};

}  // namespace quarn
