#include "Platform/PathText.h"
#include "QuarnCLI/CLIError.h"
#include "QuarnCLI/Console.h"
#include "QuarnCLI/move/MoveCommands.h"
#include "QuarnCore/foundation/Turn.h"
#include "QuarnCore/move/MoverEngine.h"

namespace quarn::MoveRestoreCommand {

ExitStatus run(const Invocation& invocation) {
  Platform& platform = invocation.platform;
  const auto text = invocation.args.positional();
  if (!text) throw CLIError("Usage: move restore <symlink-path>");
  const Path path = PathText::fileURL(platform.places, PathText::expandingTilde(platform.places, *text));
  const Turn turn(platform, Console::tellOfWaiting);
  MoverEngine::restore(platform, path);
  Console::print("restored: " + path.text());
  return ExitStatus::success;
}

}  // namespace quarn::MoveRestoreCommand
