#include "QuarnCLI/Console.h"
#include "QuarnCLI/backup/BackupCommands.h"
#include "QuarnCore/backup/BackupService.h"

namespace quarn::BackupCommands {
namespace {

ExitStatus run(const ReadOnlyInvocation& invocation) {
  const ReadOnlyPlatform& platform = invocation.platform;
  const Path drive = driveOf(platform.places, invocation.args);
  for (const BackupRecord& record : BackupService::list(platform, drive))
    Console::print(record.id + "\t" + record.rootPath);
  return ExitStatus::success;
}

}  // namespace

constinit const Command list{
    .words = "backup list",
    .purpose = "lists the backups on a drive",
    .flags = flags,
    .outcomes = {.success = "listed", .failure = "no drive given"},
    .handler = run,
    .usageLine = "quarn backup list --target-drive <path>",
};

}  // namespace quarn::BackupCommands
