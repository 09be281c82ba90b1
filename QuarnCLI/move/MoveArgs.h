#pragma once

#include <optional>
#include <string>

#include "Platform/Platform.h"
#include "QuarnCLI/Invocation.h"
#include "QuarnCore/discovery/DriveScanner.h"
#include "QuarnCore/move/MoveSelection.h"

/// What the commands of the group "move" read from their arguments in common.
namespace quarn::MoveArgs {

/// What is moved, and where to.
struct QueueChoices {
  std::optional<std::string> targetDrive;
  bool includesData = true;
};
QueueChoices queueChoices(const CLIArgs& args);

MoveSelection::Choices selectionChoices(const CLIArgs& args);

/// How a queue is carried out.
struct RunChoices {
  bool asksFirst = true;
  bool showsProgress = false;
  bool quitsRunning = false;
};
RunChoices runChoices(const CLIArgs& args);

/// The drive of that mount path or name, whatever it is; with none given, the first external and writable
/// one. Throws `CLIError` when there is none.
DriveInfo resolveDrive(const ReadOnlyPlatform& platform, const std::optional<std::string>& wanted);

}  // namespace quarn::MoveArgs
