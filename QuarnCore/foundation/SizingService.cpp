#include "QuarnCore/foundation/SizingService.h"

#include <functional>
#include <unordered_set>

namespace quarn::SizingService {
namespace {

using DirID = FileIdentity;

struct DirIDHash {
  std::size_t operator()(const DirID& id) const {
    // Inode numbers alone repeat between volumes. The device number goes into the upper bits, which inode
    // numbers rarely use.
    return std::hash<std::uint64_t>()(id.inode ^ (static_cast<std::uint64_t>(id.device) << 48));
  }
};

class BlockSum : public WalkVisitor {
 public:
  explicit BlockSum(const Cancellation* cancellation) : cancellation_(cancellation) {}

  WalkStep visit(const WalkItem& item) override {
    const FileKind kind = item.kind();
    if (kind == FileKind::symbolicLink) return WalkStep::proceed;
    const auto attributes = item.attributes();
    if (!attributes) return kind == FileKind::folder ? WalkStep::skipDescendants : WalkStep::proceed;
    if (kind == FileKind::folder) return enter(attributes->identity);
    bytes += attributes->blockBytes;
    return WalkStep::proceed;
  }
  WalkStep failed(const Path&, const PlatformError&) override { return WalkStep::proceed; }

  std::int64_t bytes = 0;

 private:
  /// A folder can be reached twice through a bind mount or a firmlink.
  WalkStep enter(const DirID& folder) {
    if (cancellation_ && cancellation_->load()) return WalkStep::stop;
    return seen_.insert(folder).second ? WalkStep::proceed : WalkStep::skipDescendants;
  }

  const Cancellation* cancellation_;
  std::unordered_set<DirID, DirIDHash> seen_;
};

std::int64_t measure(const ReadOnlyPlatform& platform, const Path& item, const Cancellation* cancellation) {
  const Path resolved = platform.files.resolvingLinks(item);
  const auto attributes = platform.files.attributes(resolved);
  if (!attributes) return 0;
  if (attributes->kind == FileKind::regular) return attributes->blockBytes;
  return attributes->kind == FileKind::folder ? walk(platform, resolved, cancellation) : 0;
}

}  // namespace

std::int64_t measure(const ReadOnlyPlatform& platform, const Path& item) {
  return measure(platform, item, nullptr);
}

std::int64_t size(const ReadOnlyPlatform& platform, const Path& item) {
  return measure(platform, item);
}

std::int64_t walk(const ReadOnlyPlatform& platform, const Path& folder, const Cancellation* cancellation) {
  if (cancellation && cancellation->load()) return 0;
  BlockSum sum(cancellation);
  platform.files.walk(folder, Hidden::skippedDots, sum);
  return sum.bytes;
}

SizeTask::SizeTask(const ReadOnlyPlatform& platform, const Path& item, ThreadPriority priority)
    : value_(std::async(std::launch::async, [this, platform, item, priority] {
        setCurrentThreadPriority(priority);
        return measure(platform, item, &cancellation_);
      })) {}

SizeTask::~SizeTask() {
  cancel();
}

std::int64_t SizeTask::value() {
  return value_.get();
}

void SizeTask::cancel() {
  cancellation_.store(true);
}

std::unique_ptr<SizeTask> sizeAsync(const ReadOnlyPlatform& platform, const Path& item,
                                    ThreadPriority priority) {
  return std::make_unique<SizeTask>(platform, item, priority);
}

}  // namespace quarn::SizingService
