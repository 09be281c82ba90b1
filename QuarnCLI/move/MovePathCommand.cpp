#include "Platform/PathText.h"
#include "QuarnCLI/CLIError.h"
#include "QuarnCLI/Console.h"
#include "QuarnCLI/Invocation.h"
#include "QuarnCLI/move/MoveCommands.h"
#include "QuarnCLI/move/MoveFlags.h"
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
ExitStatus tellThatItIsALink(const ReadOnlyPlatform& platform, const Path& source) {
  const std::string target = platform.files.readSymbolicLink(source).valueOr("unknown");
  Console::print("already symlink: " + source.text() + " -> " + target);
  return ExitStatus::success;
}

void printPlan(const PathMover::Plan& plan) {
  Console::print("source:      " + plan.source.text());
  Console::print("destination: " + plan.destination.text());
  Console::print("source_kb:   " + std::to_string(plan.sourceKB));
  Console::printNow("minimum_kb:  " + std::to_string(plan.minimumKB));
}

void printDestinationSize(std::int64_t destinationKB) {
  Console::printNow("destination_kb: " + std::to_string(destinationKB));
}

ExitStatus run(const Invocation& invocation) {
  Platform& platform = invocation.platform;
  const bool asksFirst = !invocation.args.contains(MoveFlags::yes);
  const bool showsProgress = invocation.args.contains(MoveFlags::progress);
  const auto [source, destination] = givenPair(invocation);
  if (platform.files.isSymbolicLink(source)) return tellThatItIsALink(platform, source);
  const auto plan = PathMover::plan(platform, source, destination);
  printPlan(plan);
  if (asksFirst && !Console::confirms()) return ExitStatus::success;

  const PathMover::Listener listener{.waiting = Console::tellOfWaiting, .copied = printDestinationSize};
  if (!PathMover::carryOut(platform, plan, showsProgress, listener))
    return tellThatItIsALink(platform, source);
  Console::print("linked: " + source.text() + " -> " + destination.text());
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
