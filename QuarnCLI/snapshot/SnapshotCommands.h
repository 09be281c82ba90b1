#pragma once

#include "QuarnCLI/Command.h"

/// The rows of the commands of the group "snapshot". A snapshot is a safety net, so a failure is told and the
/// exit status is success all the same.
namespace quarn::SnapshotCommands {

extern const Command create;
extern const Command list;

}  // namespace quarn::SnapshotCommands
