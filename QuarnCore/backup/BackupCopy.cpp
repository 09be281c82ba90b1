#include "QuarnCore/backup/BackupCopy.h"

#include <algorithm>

#include "Platform/CocoaError.h"
#include "QuarnCore/backup/BackupNames.h"
#include "QuarnCore/foundation/FileStash.h"
#include "QuarnCore/move/MoverError.h"
#include "QuarnCore/move/Obstacles.h"

namespace quarn {
namespace {

/// Collects what has to be renamed. What can't be listed could hold such names, too.
class NamesToSanitize : public WalkVisitor {
 public:
  explicit NamesToSanitize(const Path& root) : root_(root) {}

  WalkStep visit(const WalkItem& item) override {
    const Path path(item.relativePath());
    const std::string name = path.lastComponent();
    if (BackupNames::sanitized(name) != name) items.push_back(root_.appending(path.text()));
    return WalkStep::proceed;
  }
  WalkStep failed(const Path&, const PlatformError& error) override {
    failure = error;
    return WalkStep::stop;
  }

  std::vector<Path> items;
  std::optional<PlatformError> failure;

 private:
  Path root_;
};

class Count : public WalkVisitor {
 public:
  Count(const FileSystem& files, const Path& root) : files_(files), root_(root) {}

  WalkStep visit(const WalkItem& item) override {
    contents.fileCount += counts(item) ? 1 : 0;
    if (!Obstacles::canBeCopied(item.kind())) contents.uncopyable = std::string(item.relativePath());
    return WalkStep::proceed;
  }
  WalkStep failed(const Path&, const PlatformError& error) override {
    failure = error;
    return WalkStep::stop;
  }

  BackupContents contents;
  std::optional<PlatformError> failure;

 private:
  bool counts(const WalkItem& item) const {
    if (item.kind() != FileKind::symbolicLink) return item.kind() != FileKind::folder;
    const Path link = root_.appending(item.relativePath());
    return files_.exists(link) && !files_.isFolder(link);
  }

  const FileSystem& files_;
  Path root_;
};

/// Gives the owner the right to change a folder of the copy, for as long as it lives: the folder may have
/// come without it, and what is in it couldn't be renamed, nor the folder be moved to another one.
class Changeable {
 public:
  Changeable(FileSystem& files, const Path& folder) : files_(files), place_(folder) {
    constexpr std::uint32_t ofOwner = 0300;
    const auto attributes = files.attributes(folder);
    const bool isFolder = attributes && attributes->kind == FileKind::folder;
    if (!isFolder || (attributes->permissions & ofOwner) == ofOwner) return;
    mode_ = attributes->permissions;
    files.setPermissions(folder, *mode_ | ofOwner).orThrow();
  }
  ~Changeable() {
    if (mode_) files_.setPermissions(place_, *mode_).orIgnore();
  }
  Changeable(const Changeable&) = delete;
  Changeable& operator=(const Changeable&) = delete;

  void isNowAt(const Path& place) { place_ = place; }

 private:
  FileSystem& files_;
  Path place_;
  std::optional<std::uint32_t> mode_;  ///< the one that it had
};

}  // namespace

BackupContents BackupContents::of(const ReadOnlyPlatform& platform, const Path& root) {
  Count count(platform.files, root);
  if (!Obstacles::canBeCopied(platform.files.attributes(root).orThrow().kind))
    count.contents.uncopyable = root.lastComponent();
  platform.files.walk(root, Hidden::included, count);
  if (count.failure) throw *count.failure;
  return count.contents;
}

void BackupCopy::make(const Path& source) const {
  clear(place_, "backup-conflict");
  platform_.files.copy(source, place_).orThrow();
}

void BackupCopy::sanitizeNames() const {
  // What a link leads to is no copy, and its names must stay.
  if (platform_.files.attributes(place_).orThrow().kind == FileKind::symbolicLink)
    throw MoveRefused("Only a link could be copied: " + place_.text());
  NamesToSanitize names(place_);
  platform_.files.walk(place_, Hidden::included, names);
  if (names.failure) throw *names.failure;
  // A child is renamed before its folder, whose path is shorter.
  std::sort(names.items.begin(), names.items.end(), [](const Path& a, const Path& b) {
    return std::pair(b.text().size(), a.text()) < std::pair(a.text().size(), b.text());
  });
  for (const Path& item : names.items) sanitizeName(item);
}

void BackupCopy::sanitizeName(const Path& item) const {
  const auto attributes = platform_.files.attributes(item);
  // It went with a folder that had to make room.
  if (!attributes && CocoaError::saysMissing(attributes.error())) return;
  const Changeable folder(platform_.files, item.parent());
  const Path target = item.parent().appending(BackupNames::sanitized(item.lastComponent()));
  clear(target, "backup-name-conflict");
  if (platform_.files.rename(item, target).orThrow()) setAside_.moved(item, target);
}

void BackupCopy::clear(const Path& place, const std::string& reason) const {
  Changeable item(platform_.files, place);
  const auto aside = FileStash::moveAside(platform_, place, reason);
  if (!aside) return;
  item.isNowAt(*aside);
  setAside_.add(place, *aside);
}

}  // namespace quarn
