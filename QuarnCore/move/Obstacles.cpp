#include "QuarnCore/move/Obstacles.h"

namespace quarn {
namespace {

class Search : public WalkVisitor {
 public:
  WalkStep visit(const WalkItem& item) override {
    if (!Obstacles::canBeCopied(item.kind())) found.toCopying = std::string(item.relativePath());
    found.toRemoval = item.obstacleToRemoval();
    return found.toCopying || found.toRemoval ? WalkStep::stop : WalkStep::proceed;
  }
  WalkStep failed(const Path&, const PlatformError& error) override {
    found.toRemoval = error;
    return WalkStep::stop;
  }

  Obstacles found;
};

}  // namespace

bool Obstacles::canBeCopied(FileKind kind) {
  return kind != FileKind::socket && kind != FileKind::blockDevice && kind != FileKind::characterDevice;
}

Obstacles Obstacles::find(const ReadOnlyPlatform& platform, const Path& item) {
  Search search;
  search.found.toRemoval = platform.files.obstacleToRemoval(item);
  const auto attributes = platform.files.attributes(item);
  if (attributes && !canBeCopied(attributes->kind)) search.found.toCopying = item.lastComponent();
  const bool isFolder = attributes && attributes->kind == FileKind::folder;
  if (isFolder && !search.found.toRemoval) platform.files.walk(item, Hidden::included, search);
  return search.found;
}

}  // namespace quarn
