#include "QuarnCLI/Console.h"
#include "QuarnCLI/snapshot/SnapshotCommands.h"
#include "QuarnCore/move/APFSSnapshotService.h"

namespace quarn::SnapshotListCommand {

ExitStatus run(const Invocation& invocation) {
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

}  // namespace quarn::SnapshotListCommand
