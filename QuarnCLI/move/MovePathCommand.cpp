#include "Platform/PathText.h"
#include "QuarnCLI/CLIError.h"
#include "QuarnCLI/Console.h"
#include "QuarnCLI/Invocation.h"
#include "QuarnCLI/move/MoveCommands.h"
#include "QuarnCLI/move/MoveFlags.h"
#include "QuarnCore/foundation/Turn.h"
#include "QuarnCore/move/PathMover.h"

namespace quarn::MoveCommands {
namespace {

struct Pair {
  Path source;
  Path destination;
};

/// An empty text comes from a variable that isn't set, and would mean the current folder.
bool isMissing(const std::optional<std::string>& text) {
  return !text || text->empty();
}

Path givenPath(const ReadOnlyPlatform& platform, const std::string& text) {
  const std::string expanded = PathText::expandingTilde(platform.places, text);
  return platform.files.standardized(PathText::fileURL(platform.places, expanded));
}

Pair givenPair(const Invocation& invocation) {
  const auto source = invocation.args.value(MoveFlags::source);
  const auto destination = invocation.args.value(MoveFlags::destination);
  if (isMissing(source) || isMissing(destination)) {
    throw CLIError("Usage: move path --source <path> --destination <path> [--yes] [--progress]");
  }
  return {givenPath(invocation.platform, *source), givenPath(invocation.platform, *destination)};
}

/// Nothing is wrong then, so that the command can be repeated safely.
bool wasMovedAlready(const ReadOnlyPlatform& platform, const Path& source) {
  if (!platform.files.isSymbolicLink(source)) return false;
  const std::string target = platform.files.readSymbolicLink(source).valueOr("unknown");
  Console::print("already symlink: " + source.text() + " -> " + target);
  return true;
}

void printPlan(const PathMover::Plan& plan) {
  Console::print("source:      " + plan.source.text());
  Console::print("destination: " + plan.destination.text());
  Console::print("source_kb:   " + std::to_string(plan.sourceKB));
  Console::printNow("minimum_kb:  " + std::to_string(plan.minimumKB));
}

void carryOut(Platform& platform, const PathMover::Plan& plan, bool showsProgress) {
  const std::int64_t destinationKB = PathMover::copy(platform, plan, showsProgress);
  Console::printNow("destination_kb: " + std::to_string(destinationKB));
  PathMover::replaceByLink(platform, plan, destinationKB);
  Console::print("linked: " + plan.source.text() + " -> " + plan.destination.text());
}

ExitStatus run(const Invocation& invocation) {
  Platform& platform = invocation.platform;
  const bool asksFirst = !invocation.args.contains(MoveFlags::yes);
  const bool showsProgress = invocation.args.contains(MoveFlags::progress);
  const auto [source, destination] = givenPair(invocation);
  if (wasMovedAlready(platform, source)) return ExitStatus::success;
  auto plan = PathMover::plan(platform, source, destination);
  printPlan(plan);
  if (asksFirst && !Console::confirms()) return ExitStatus::success;

  const Turn turn(platform, Console::tellOfWaiting);
  // Another run may have come and gone while the source was measured and the person asked.
  if (wasMovedAlready(platform, source)) return ExitStatus::success;
  if (turn.hadToWait()) plan = PathMover::plan(platform, source, destination);
  carryOut(platform, plan, showsProgress);
  return ExitStatus::success;
}

constexpr Flag flags[] = {MoveFlags::source, MoveFlags::destination, MoveFlags::yes, MoveFlags::progress};

constexpr TellingLine tellingLines[] = {
    {"already symlink: …", "a link already; where it leads to"},
    {"Proceed? [y/N] aborted.", "declined"},
};

}  // namespace

constinit const Command path{
    .words = "move path",
    .purpose = "moves any folder or file",
    .flags = flags,
    .outcomes = {.success = "moved, a link already, or declined", .failure = "anything else"},
    .tellingLines = tellingLines,
    .handler = run,
    .usageLine = "quarn move path --source <path> --destination <path> [--yes] [--progress]",
};

}  // namespace quarn::MoveCommands
