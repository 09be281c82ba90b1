#include "QuarnCLI/Console.h"
#include "QuarnCLI/Invocation.h"
#include "QuarnCLI/snapshot/SnapshotCommands.h"
#include "QuarnCore/move/APFSSnapshotService.h"

namespace quarn::SnapshotCommands {

namespace {

ExitStatus run(const Invocation& invocation) {
  Platform& platform = invocation.platform;
  if (!APFSSnapshotService::isSupported(platform)) {
    Console::print("Local snapshots not supported on this volume.");
    return ExitStatus::success;
  }
  const auto result = APFSSnapshotService::create(platform, std::nullopt);
  if (result.succeeded && result.snapshot) {
    Console::print("Created snapshot: " + result.snapshot->name);
    return ExitStatus::success;
  }
  Console::print("Snapshot failed.");
  if (!result.standardError.empty()) Console::print(result.standardError);
  return ExitStatus::success;
}

constexpr TellingLine tellingLines[] = {
    {"Snapshot failed.", ""},
    {"Local snapshots not supported on this volume.", ""},
};

}  // namespace

constinit const Command create{
    .words = "snapshot create",
    .purpose = "takes a local snapshot of the startup volume",
    .outcomes = {.success = "asked for", .failure = ""},
    .tellingLines = tellingLines,
    .handler = run,
    .usageLine = "quarn snapshot create   # tmutil localsnapshot of /",
};

}  // namespace quarn::SnapshotCommands
