#include "Platform/PathText.h"
#include "QuarnCLI/CLIError.h"
#include "QuarnCLI/Console.h"
#include "QuarnCLI/move/DiskUsage.h"
#include "QuarnCLI/move/MoveCommands.h"
#include "QuarnCLI/move/PathPair.h"

namespace quarn::MovePathCommand {
namespace {

/// An empty text comes from a variable that isn't set, and would mean the current folder.
bool isMissing(const std::optional<std::string>& text) {
  return !text || text->empty();
}

Path givenPath(Platform& platform, const std::string& text) {
  const std::string expanded = PathText::expandingTilde(platform.places, text);
  return platform.files.standardized(PathText::fileURL(platform.places, expanded));
}

void runRsync(Platform& platform, const Path& source, const Path& destination, bool progress) {
  const auto attributes = platform.files.attributes(source);
  const bool isFolder = attributes && attributes->kind == FileKind::directory;
  if (isFolder) platform.files.createFolder(destination).orThrow();
  std::vector<std::string> arguments = {"-aH"};
  if (progress) arguments.emplace_back("--progress");
  // The trailing slashes make the contents of the one land in the other.
  for (const Path& path : {source, destination}) arguments.push_back(path.text() + (isFolder ? "/" : ""));
  const auto child =
      platform.processes.start(Path("/usr/bin/rsync"), arguments, OutputStreams::inherited).orThrow();
  const int status = child->waitForExit();
  if (status != 0) throw CLIError("rsync exited " + std::to_string(status));
}

void requireAtLeast(std::int64_t minimumKB, std::int64_t destinationKB) {
  if (destinationKB >= minimumKB) return;
  throw CLIError("Verification failed: destination is below 95%; source left untouched.");
}

void replaceByLink(Platform& platform, const Path& source, const Path& destination) {
  platform.files.remove(source).orThrow();
  platform.files.createLink(source, destination.text()).orThrow();
  Console::print("linked: " + source.text() + " -> " + destination.text());
}

}  // namespace

ExitStatus run(const Invocation& invocation) {
  Platform& platform = invocation.platform;
  const CLIArgs& args = invocation.args;
  const auto sourceText = args.value("--source");
  const auto destinationText = args.value("--destination");
  if (isMissing(sourceText) || isMissing(destinationText)) {
    throw CLIError("Usage: move path --source <path> --destination <path> [--yes] [--progress]");
  }
  const Path source = givenPath(platform, *sourceText);
  const Path destination = givenPath(platform, *destinationText);
  if (platform.files.isSymbolicLink(source)) {
    const std::string target = platform.files.readLink(source).valueOr("unknown");
    Console::print("already symlink: " + source.text() + " -> " + target);
    return ExitStatus::success;
  }
  PathPair::requireSafe(platform, source, destination);

  const std::int64_t sourceKB = DiskUsage::kilobytes(platform, source);
  const std::int64_t minimumKB = sourceKB * 95 / 100;
  Console::print("source:      " + source.text());
  Console::print("destination: " + destination.text());
  Console::print("source_kb:   " + std::to_string(sourceKB));
  Console::printNow("minimum_kb:  " + std::to_string(minimumKB));
  if (!args.contains("--yes") && !Console::confirms()) return ExitStatus::success;

  platform.files.createFolder(destination.parent()).orThrow();
  runRsync(platform, source, destination, args.contains("--progress"));
  const std::int64_t destinationKB = DiskUsage::kilobytes(platform, destination);
  Console::printNow("destination_kb: " + std::to_string(destinationKB));
  requireAtLeast(minimumKB, destinationKB);
  replaceByLink(platform, source, destination);
  return ExitStatus::success;
}

}  // namespace quarn::MovePathCommand
