#include "QuarnCore/foundation/SizeCalculator.h"

#include "Platform/ByteCount.h"

namespace quarn::SizeCalculator {
namespace {

/// The size with all forks, if the volume reports it; else that of the data fork.
std::int64_t allocated(const FileAttributes& attributes) {
  return attributes.totalAllocatedSize.value_or(attributes.allocatedSize.value_or(0));
}

class RegularFileSum : public WalkVisitor {
 public:
  WalkStep visit(const WalkItem& item) override {
    if (item.kind() == FileKind::regular) {
      if (const auto attributes = item.attributes()) bytes += allocated(*attributes);
    }
    return WalkStep::proceed;
  }
  WalkStep failed(const Path&, const PlatformError&) override { return WalkStep::proceed; }

  std::int64_t bytes = 0;
};

}  // namespace

std::int64_t size(const ReadOnlyPlatform& platform, const Path& item) {
  const auto attributes = platform.files.attributes(item);
  if (!attributes) return 0;
  if (attributes->kind != FileKind::folder) return allocated(*attributes);
  RegularFileSum sum;
  platform.files.walk(item, Hidden::skipped, sum);
  return sum.bytes;
}

std::string format(std::int64_t bytes) {
  return ByteCount::text(bytes);
}

}  // namespace quarn::SizeCalculator
