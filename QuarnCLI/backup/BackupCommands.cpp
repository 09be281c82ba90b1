#include "QuarnCLI/FlagNames.h"
#include "QuarnCLI/Groups.h"

namespace quarn {
namespace {

constexpr Flag targetDrive{
    .name = FlagNames::targetDrive,
    .kind = ValueKind::path,
    .valueName = "path",
    .isRequired = true,
    .meaning = "the drive that holds the backups",
};
constexpr Flag flags[] = {targetDrive};

constexpr Command create{
    .words = "backup create",
    .purpose = "copies quarn's own sources and application to a dated folder",
    .flags = flags,
    .outcomes = {.success = "made", .failure = "no drive given, or a copy failed"},
    .handler = changesInALaterVersion,
    .usageLine = "quarn backup create --target-drive <path>",
};

constexpr Command list{
    .words = "backup list",
    .purpose = "lists the backups on a drive",
    .flags = flags,
    .outcomes = {.success = "listed", .failure = "no drive given"},
    .handler = looksInALaterVersion,
    .usageLine = "quarn backup list --target-drive <path>",
};

constexpr const Command* commands[] = {&create, &list};

}  // namespace

constinit const Group backupGroup{
    .words = "backup",
    .missingAction = "Missing backup action.",
    .unknownAction = "Unknown backup action: ",
    .commands = commands,
};

}  // namespace quarn
