#pragma once

#include "QuarnCLI/ExitStatus.h"
#include "QuarnCLI/Invocation.h"

/// The commands of the group "move". Each throws a `LocalizedError`.
namespace quarn {

namespace MoveDrivesCommand {
ExitStatus run(const Invocation& invocation);
}
namespace MoveAppsCommand {
ExitStatus run(const Invocation& invocation);
}
namespace MovePlanCommand {
ExitStatus run(const Invocation& invocation);
}
namespace MoveAllCommand {
ExitStatus run(const Invocation& invocation);
}
namespace MoveNextCommand {
ExitStatus run(const Invocation& invocation);
}
namespace MoveOneCommand {
ExitStatus run(const Invocation& invocation);
}
namespace MovePathCommand {
ExitStatus run(const Invocation& invocation);
}
namespace MoveRestoreCommand {
ExitStatus run(const Invocation& invocation);
}
namespace MoveBackCommand {
ExitStatus run(const Invocation& invocation);
}

}  // namespace quarn
