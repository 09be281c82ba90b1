#include "Platform/PathText.h"
#include "Platform/Text.h"
#include "QuarnCLI/CLIError.h"
#include "QuarnCLI/Console.h"
#include "QuarnCLI/move/DiskUsage.h"
#include "QuarnCLI/move/MoveCommands.h"

namespace quarn::MovePathCommand {
namespace {

Path givenPath(Platform& platform, const std::string& text) {
  const std::string expanded = PathText::expandingTilde(platform.places, text);
  return platform.files.standardized(PathText::fileURL(platform.places, expanded));
}

bool isSymlink(Platform& platform, const Path& item) {
  const auto attributes = platform.files.attributes(item);
  return attributes && attributes->kind == FileKind::symbolicLink;
}

Path nearestExisting(Platform& platform, Path item) {
  while (!platform.files.exists(item) && item.parent() != item) item = item.parent();
  return item;
}

/// By what the paths lead to: behind a link, one folder has two names, and other folders above it.
bool leadsInto(Platform& platform, const Path& folder, const Path& item) {
  const auto wanted = platform.files.attributes(platform.files.resolvingLinks(folder));
  for (Path current = platform.files.resolvingLinks(nearestExisting(platform, item));;
       current = current.parent()) {
    const auto found = platform.files.attributes(current);
    if (wanted && found && wanted->identity == found->identity) return true;
    if (current.parent() == current) return false;
  }
}

/// Removing the source would then remove the copy with it.
void refuseDestinationInSource(Platform& platform, const Path& source, const Path& destination) {
  if (!platform.files.exists(source)) {
    throw CLIError("Source path does not exist: " + source.text());
  }
  if (Text::equal(source.text(), destination.text())) {
    throw CLIError("Source and destination are the same path.");
  }
  if (leadsInto(platform, source, destination)) {
    throw CLIError("Destination lies inside the source: " + destination.text());
  }
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
  if (!sourceText || !destinationText) {
    throw CLIError("Usage: move path --source <path> --destination <path> [--yes] [--progress]");
  }
  const Path source = givenPath(platform, *sourceText);
  const Path destination = givenPath(platform, *destinationText);
  if (isSymlink(platform, source)) {
    const std::string target = platform.files.readLink(source).valueOr("unknown");
    Console::print("already symlink: " + source.text() + " -> " + target);
    return ExitStatus::success;
  }
  refuseDestinationInSource(platform, source, destination);

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
  Console::print("destination_kb: " + std::to_string(destinationKB));
  requireAtLeast(minimumKB, destinationKB);
  replaceByLink(platform, source, destination);
  return ExitStatus::success;
}

}  // namespace quarn::MovePathCommand
