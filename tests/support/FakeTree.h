#pragma once

#include <algorithm>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "tests/support/Decorators.h"

namespace quarn::doubles {

/// The real file system, but every walk meets the items of a list: for folders that are met twice,
/// figures that no disk here gives, and walks that something happens in the middle of.
class FakeTree : public FileSystemDecorator {
 public:
  struct Item {
    std::string path;
    FileKind kind = FileKind::regular;
    Result<FileAttributes> attributes;
  };

  using FileSystemDecorator::FileSystemDecorator;

  void walk(const Path&, Hidden, WalkVisitor& visitor) const override { show(items, visitor); }
  void walkSorted(const Path&, Hidden, WalkVisitor& visitor) const override {
    std::vector<Item> sorted = items;
    std::sort(sorted.begin(), sorted.end(), [](const Item& a, const Item& b) {
      return std::filesystem::path(a.path) < std::filesystem::path(b.path);
    });
    show(sorted, visitor);
  }

  std::vector<Item> items;
  std::function<void(const Item&)> afterEach;

  static Item file(const std::string& path, std::int64_t blockBytes) {
    FileAttributes attributes;
    attributes.kind = FileKind::regular;
    attributes.blockBytes = blockBytes;
    return {path, FileKind::regular, attributes};
  }
  static Item folder(const std::string& path, FileIdentity identity) {
    FileAttributes attributes;
    attributes.kind = FileKind::folder;
    attributes.blockBytes = 1'000'000;
    attributes.identity = identity;
    return {path, FileKind::folder, attributes};
  }

 private:
  void show(const std::vector<Item>& shown, WalkVisitor& visitor) const {
    std::string skipped;
    for (const Item& item : shown) {
      if (!skipped.empty() && item.path.rfind(skipped, 0) == 0) continue;
      const WalkStep step = visitor.visit(Visited(item));
      if (step == WalkStep::stop) return;
      if (step == WalkStep::skipDescendants) skipped = item.path + "/";
      if (afterEach) afterEach(item);
    }
  }

  class Visited : public WalkItem {
   public:
    explicit Visited(const Item& item) : item_(item) {}
    std::string_view relativePath() const override { return item_.path; }
    FileKind kind() const override { return item_.kind; }
    Result<FileAttributes> attributes() const override { return item_.attributes; }
    Result<FileAttributes> attributesBelow(const Path&) const override { return item_.attributes; }
    std::optional<PlatformError> obstacleToRemoval() const override { return std::nullopt; }

   private:
    const Item& item_;
  };
};

inline PlatformError unreadable() {
  return {cocoaErrorDomain, CocoaErrorCode::fileReadNoPermission, "not for you"};
}

}  // namespace quarn::doubles
