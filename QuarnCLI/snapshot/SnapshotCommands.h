#pragma once

#include "QuarnCLI/ExitStatus.h"
#include "QuarnCLI/Invocation.h"

/// The commands of the group "snapshot". A snapshot is a safety net, so a failure is told and the exit
/// status is success all the same.
namespace quarn {

namespace SnapshotCreateCommand {
ExitStatus run(const Invocation& invocation);
}
namespace SnapshotListCommand {
ExitStatus run(const Invocation& invocation);
}

}  // namespace quarn
