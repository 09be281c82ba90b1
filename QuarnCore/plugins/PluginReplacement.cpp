#include "QuarnCore/plugins/PluginReplacement.h"

#include <algorithm>

#include "QuarnCore/move/MoverError.h"
#include "QuarnCore/plugins/PluginContents.h"

namespace quarn::PluginReplacement {
namespace {

std::int64_t leastBytes(const Result<FileAttributes>& attributes) {
  return attributes ? std::min(attributes->size.value_or(0), attributes->blockBytes) : 0;
}

/// Reads the start of each file, and adds up what a copy takes at least: the other volume may have smaller
/// blocks, and keep holes.
class Survey : public WalkVisitor {
 public:
  Survey(const ReadOnlyPlatform& platform, const Path& root) : platform_(platform), root_(root) {}

  WalkStep visit(const WalkItem& item) override {
    if (item.kind() != FileKind::regular) return WalkStep::proceed;
    bytes += leastBytes(item.attributes());
    const auto start = platform_.files.readStart(root_.appending(item.relativePath()), 1);
    return start ? WalkStep::proceed : failed(root_, start.error());
  }
  WalkStep failed(const Path&, const PlatformError& error) override {
    fault = error;
    return WalkStep::stop;
  }

  std::int64_t bytes = 0;
  std::optional<PlatformError> fault;

 private:
  const ReadOnlyPlatform& platform_;
  const Path& root_;
};

/// Adds up the blocks that go with an item.
class Blocks : public WalkVisitor {
 public:
  WalkStep visit(const WalkItem& item) override {
    if (const auto attributes = item.attributes()) bytes += attributes->blockBytes;
    return WalkStep::proceed;
  }
  WalkStep failed(const Path&, const PlatformError&) override { return WalkStep::proceed; }

  std::int64_t bytes = 0;
};

/// 0 bytes for important usage may mean that the system doesn't know.
std::optional<std::int64_t> freeBytes(const ReadOnlyPlatform& platform, const Path& folder) {
  const auto volume = platform.volumes.properties(folder);
  if (!volume) return std::nullopt;
  const std::int64_t important = volume->availableCapacityForImportantUsage.value_or(0);
  if (important <= 0) return volume->availableCapacity;
  return std::max(important, volume->availableCapacity.value_or(0));
}

/// On the volume of the drive itself a copy may share its blocks with the source.
void requireRoom(const ReadOnlyPlatform& platform, const PluginPlaces& places, std::int64_t needed) {
  const auto from = platform.files.attributes(platform.files.resolvingLinks(places.source));
  const auto to = platform.files.attributes(platform.files.resolvingLinks(places.external.parent()));
  if (!from || !to || from->identity.device == to->identity.device) return;
  const auto available = freeBytes(platform, places.external.parent());
  if (!available) return;
  Blocks freed;
  if (!platform.files.isSymbolicLink(places.external))
    platform.files.walk(places.external, Hidden::included, freed);
  const std::int64_t room = *available + freed.bytes;
  if (needed > room) throw MoverError::insufficientSpace(needed, room);
}

}  // namespace

void requirePossible(const ReadOnlyPlatform& platform, const PluginPlaces& places) {
  const Path source = platform.files.resolvingLinks(places.source);
  Survey survey(platform, source);
  platform.files.walk(source, Hidden::included, survey);
  if (survey.fault) throw *survey.fault;
  requireRoom(platform, places, survey.bytes);
  if (platform.files.isSymbolicLink(places.external) || !PluginGuard::isSourceAtLink(platform, places))
    return;
  PluginContents::requireHoldsAll(platform, places.link, places.external);
  PluginContents::requireNotUnfinished(platform, places.link, places.external);
}

}  // namespace quarn::PluginReplacement
