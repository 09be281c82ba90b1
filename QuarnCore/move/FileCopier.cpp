#include "QuarnCore/move/FileCopier.h"

#include <optional>

#include "Platform/RepeatingTimer.h"
#include "Platform/Text.h"
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

/// `ditto` leaves a folder that is there already its own mode and attributes (ditto(1)). Where it brought
/// nothing, nothing is left for the comparison to find.
void copyItem(Platform& platform, const Path& from, const Path& to, const Claim& claim) {
  const Path source = platform.files.resolvingLinks(from);
  runDitto(platform, from, to);
  if (claim.isEmpty(platform) && !holdsNothing(platform, source)) {
    claim.giveBack(platform);
    return;
  }
  const auto copied = platform.files.copyAttributes(source, to);
  // Whether the copy is there, the failure itself tells best: a look that fails could mean anything.
  if (!copied && copied.error().code != CocoaErrorCode::fileNoSuchFile) throw copied.error();
}

}  // namespace

Claim copy(Platform& platform, const Path& from, const Path& to, std::int64_t totalBytes,
           const ProgressCallback& progress) {
  const Claim claim(platform, to, from);
  std::optional<RepeatingTimer> timer;
  if (progress) {
    timer.emplace(pollInterval, [&] { progress(SizeCalculator::size(platform, to), totalBytes); });
  }
  try {
    copyItem(platform, from, to, claim);
  } catch (const PlatformError& error) {
    claim.giveBack(platform);
    throw MoverError::copyFailed(error.localizedDescription());
  }
  if (progress) progress(totalBytes, totalBytes);
  return claim;
}

}  // namespace quarn::FileCopier
