#include "Platform/PathText.h"
#include "Platform/Text.h"
#include "QuarnCLI/CLIError.h"
#include "QuarnCLI/Console.h"
#include "QuarnCLI/Invocation.h"
#include "QuarnCLI/move/MoveCommands.h"
#include "QuarnCore/foundation/Sighting.h"
#include "QuarnCore/foundation/Turn.h"
#include "QuarnCore/move/MoverEngine.h"

namespace quarn::MoveCommands {
namespace {

/// A path as it is; a bare name means an application in the shared folder.
Path resolveSymlinkURL(const ReadOnlyPlatform& platform, const std::string& text) {
  const std::string expanded = PathText::expandingTilde(platform.places, text);
  if (expanded.starts_with('/')) return Path(expanded);
  const std::string name = Text::hasSuffix(expanded, ".app") ? expanded : expanded + ".app";
  return Path("/Applications").appending(name);
}

void requireLink(const ReadOnlyPlatform& platform, const Path& item) {
  if (!platform.files.exists(item)) {
    sight(platform.files, item).orThrow();
    throw CLIError("No such item: " + item.text());
  }
  if (platform.files.isSymbolicLink(item)) return;
  throw CLIError("Not a symlink: " + item.text() + " — already local, nothing to move back.");
}

bool suggestsMissingRights(const PlatformError& error) {
  return error.domain == cocoaErrorDomain && (error.code == CocoaErrorCode::fileWriteNoPermission ||
                                              error.code == CocoaErrorCode::fileNoSuchFile);
}

std::string sudoAdvice(const Path& item, const std::string& program, const std::string& typed) {
  return "Permission denied moving back " + item.lastComponent() + ".\nRe-run under sudo:\n  sudo \"" +
         program + "\" move back \"" + typed + "\"";
}

ExitStatus run(const Invocation& invocation) {
  Platform& platform = invocation.platform;
  const auto text = invocation.args.positional();
  if (!text) {
    throw CLIError(
        "Usage: move back <app-name|symlink-path>\n"
        "  e.g. move back 'Little Snitch.app'\n"
        "       move back /Applications/Capo.app");
  }
  const Path item = resolveSymlinkURL(platform, *text);
  const Turn turn(platform, Console::tellOfWaiting);
  requireLink(platform, item);
  try {
    MoverEngine::restore(platform, item);
  } catch (const PlatformError& error) {
    if (!suggestsMissingRights(error)) throw;
    throw CLIError(sudoAdvice(item, invocation.program, *text));
  }
  Console::print("moved back: " + item.text());
  return ExitStatus::success;
}

}  // namespace

constinit const Command back{
    .words = "move back",
    .purpose = "brings an application home, by its name or its path, and leaves its data on the drive",
    .operand = Operand{.name = "<app-name|symlink-path>"},
    .outcomes = {.success = "at home", .failure = "anything else"},
    .handler = run,
    .usageLine =
        "quarn move back <app-name|symlink-path>   # friendly alias; accepts e.g. \"Little Snitch.app\"",
};

}  // namespace quarn::MoveCommands
