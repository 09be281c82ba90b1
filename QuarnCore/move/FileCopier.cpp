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
      Text::isUTF8(standardError) ? Text::trimmingWhitespaceAndNewlines(standardError) : std::string();
  if (detail.empty()) detail = "exit " + std::to_string(status);
  return {"FileCopier", status, "ditto failed: " + detail};
}

void runDitto(Platform& platform, const Path& from, const Path& to) {
  // ditto(1) keeps resource forks, extended attributes and access control lists.
  const auto child =
      platform.processes
          .start(Path("/usr/bin/ditto"), {"--rsrc", from.text(), to.text()}, OutputStreams::separate)
          .orThrow();
  const OutputSink ignore = [](std::string_view) {};
  std::string error;
  const OutputSink keep = [&error](std::string_view bytes) { error.append(bytes); };
  // Read while it runs: a full pipe would stop the copy for ever.
  child->readUntilExit(ignore, keep);
  const int status = child->waitForExit();
  if (status == 0) return;
  child->readToEnd(ignore, keep);
  throw failure(status, error);
}

/// Copies the item and completes its metadata. ditto(1) leaves an existing folder, such as our claim, its own
/// mode and attributes. If ditto copied nothing at all, the empty claim is removed, so that the comparison
/// doesn't find a copy.
void copyItem(Platform& platform, const Path& from, const Path& to, const Claim& claim) {
  const Path source = platform.files.resolvingLinks(from);
  runDitto(platform, from, to);
  if (claim.isEmpty(platform) && !holdsNothing(platform, source)) {
    claim.giveBack(platform);
    return;
  }
  const auto copied = platform.files.copyAttributes(source, to);
  // A missing copy is reported by the comparison. The error is decisive here; another look could fail for any
  // reason.
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
