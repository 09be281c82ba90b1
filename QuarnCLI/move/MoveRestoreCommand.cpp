#include "Platform/PathText.h"
#include "QuarnCLI/CLIError.h"
#include "QuarnCLI/Console.h"
#include "QuarnCLI/Invocation.h"
#include "QuarnCLI/move/MoveCommands.h"
#include "QuarnCore/foundation/Turn.h"
#include "QuarnCore/move/MoverEngine.h"

namespace quarn::MoveCommands {

namespace {

ExitStatus run(const Invocation& invocation) {
  Platform& platform = invocation.platform;
  const auto text = invocation.args.positional();
  if (!text) throw CLIError("Usage: move restore <symlink-path>");
  const Path link = PathText::fileURL(platform.places, PathText::expandingTilde(platform.places, *text));
  const Turn turn(platform, Console::tellOfWaiting);
  MoverEngine::restore(platform, link);
  Console::print("restored: " + link.text());
  return ExitStatus::success;
}

}  // namespace

constinit const Command restore{
    .words = "move restore",
    .purpose = "brings home what a link, or a launcher, leads to",
    .operand = Operand{.name = "<symlink-path>"},
    .outcomes = {.success = "at home", .failure = "anything else"},
    .handler = run,
    .usageLine = "quarn move restore <symlink-path>",
};

}  // namespace quarn::MoveCommands
