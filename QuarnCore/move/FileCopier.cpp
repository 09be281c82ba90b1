#include "QuarnCore/move/FileCopier.h"

#include <optional>

#include "Platform/RepeatingTimer.h"
#include "Platform/Text.h"
#include "QuarnCore/foundation/MoverStasher.h"
#include "QuarnCore/foundation/SizeCalculator.h"
#include "QuarnCore/move/MoverError.h"

namespace quarn::FileCopier {
namespace {

constexpr auto pollInterval = std::chrono::milliseconds(500);

PlatformError failure(int status, const std::string& standardError) {
  std::string detail =
      Text::isUTF8(standardError) ? Text::trimmingBlanksAndNewlines(standardError) : std::string();
  if (detail.empty()) detail = "exit " + std::to_string(status);
  return {"FileCopier", status, "ditto failed: " + detail};
}

void runDitto(Platform& platform, const Path& from, const Path& to) {
  const auto child =
      platform.processes
          .start(Path("/usr/bin/ditto"), {"--rsrc", from.text(), to.text()}, OutputStreams::separate)
          .orThrow();
  const OutputSink ignore = [](std::string_view) {};
  std::string error;
  const OutputSink keep = [&error](std::string_view bytes) { error.append(bytes); };
  // Read while it runs, so that many messages never fill a pipe and stop the copy for good.
  child->readUntilExit(ignore, keep);
  const int status = child->waitForExit();
  if (status == 0) return;
  child->readToEnd(ignore, keep);
  throw failure(status, error);
}

/// Of two people who move something of one name to one drive, one gets the place. A folder must not be merged
/// into that of another run.
void claim(Platform& platform, const Path& place, FileKind kind) {
  const auto claimed = platform.files.claim(place, kind);
  if (claimed) return;
  if (claimed.error().code == CocoaErrorCode::fileWriteFileExists) throw MoverError::destinationExists();
  throw MoverError::copyFailed(claimed.error().localizedDescription());
}

bool isStillEmpty(Platform& platform, const Path& place, FileKind kind) {
  if (kind == FileKind::directory) {
    const auto names = platform.files.list(place, Hidden::included);
    return names && names->empty();
  }
  const auto attributes = platform.files.attributes(place);
  return attributes && attributes->kind == FileKind::regular && attributes->size == 0;
}

/// An empty place was only claimed, and is nothing to keep.
void clearAway(Platform& platform, const Path& place, FileKind kind) {
  if (isStillEmpty(platform, place, kind))
    platform.files.remove(place).orIgnore();
  else
    MoverStasher::stash(platform, place);
}

/// `ditto` leaves a folder that is there already its own mode and attributes (ditto(1)). Where it brought
/// nothing, nothing is left for the comparison to find.
void copyItem(Platform& platform, const Path& from, const Path& to, FileKind kind) {
  const Path source = platform.files.resolvingLinks(from);
  runDitto(platform, from, to);
  if (isStillEmpty(platform, to, kind) && !isStillEmpty(platform, source, kind)) {
    platform.files.remove(to).orIgnore();
  } else if (platform.files.exists(to)) {
    platform.files.copyAttributes(source, to).orThrow();
  }
}

}  // namespace

void copy(Platform& platform, const Path& from, const Path& to, std::int64_t totalBytes,
          const ProgressCallback& progress) {
  const FileKind kind = platform.files.isDirectory(from) ? FileKind::directory : FileKind::regular;
  claim(platform, to, kind);
  std::optional<RepeatingTimer> timer;
  if (progress) {
    timer.emplace(pollInterval, [&] { progress(SizeCalculator::size(platform, to), totalBytes); });
  }
  try {
    copyItem(platform, from, to, kind);
  } catch (const PlatformError& error) {
    clearAway(platform, to, kind);
    throw MoverError::copyFailed(error.localizedDescription());
  }
  if (!progress) return;
  progress(totalBytes, totalBytes);
  timer->cancel();
}

}  // namespace quarn::FileCopier
