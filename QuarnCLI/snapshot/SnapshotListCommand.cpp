#include "QuarnCLI/Console.h"
#include "QuarnCLI/Invocation.h"
#include "QuarnCLI/snapshot/SnapshotCommands.h"
#include "QuarnCore/move/APFSSnapshotService.h"

namespace quarn::SnapshotCommands {

namespace {

ExitStatus run(const ReadOnlyInvocation& invocation) {
  const auto snapshots = APFSSnapshotService::list(invocation.platform);
  if (snapshots.empty()) {
    Console::print("No local snapshots.");
    return ExitStatus::success;
  }
  for (const auto& snapshot : snapshots) Console::print(snapshot.name);
  Console::print("---");
  Console::print("Restore (from macOS Recovery): tmutil restore /Volumes/<disk>/.<snapshot>");
  return ExitStatus::success;
}

constexpr TellingLine tellingLines[] = {{"No local snapshots.", ""}};

}  // namespace

constinit const Command list{
    .words = "snapshot list",
    .purpose = "lists the local snapshots of the startup volume",
    .outcomes = {.success = "listed", .failure = ""},
    .tellingLines = tellingLines,
    .handler = run,
    .usageLine = "quarn snapshot list",
};

}  // namespace quarn::SnapshotCommands
