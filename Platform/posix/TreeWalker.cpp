#include <cerrno>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>

#include "Platform/CocoaError.h"
#include "Platform/posix/FileOperations.h"
#include "Platform/posix/PathAt.h"
#include "Platform/posix/TreeDescent.h"
#include "Platform/posix/Trees.h"
#include "Platform/system/SystemCalls.h"

namespace quarn {
namespace {

/// The folder at a relative path below a root. It stays open until another one is asked for, because all
/// entries of a folder are visited one after the other.
class FolderBelow {
 public:
  /// Returns a descriptor that can only be used to look up names, or -1 with `errno` set.
  int at(const Path& root, std::string_view relativePath) {
    const std::string wanted = root.appending(relativePath).text();
    if (folder_.isOpen() && wanted == path_) return folder_.number();
    path_ = wanted;
    const PathAt place{Path(path_)};
    folder_ = Descriptor(::openat(place.folder(), place.name(), searchOnly | O_DIRECTORY | O_CLOEXEC));
    return folder_.number();
  }

 private:
  std::string path_;
  Descriptor folder_;
};

class Walk : public TreeWork, private WalkItem {
 public:
  Walk(const Path& root, Hidden hidden, WalkVisitor& visitor)
      : root_(root), hidden_(hidden), visitor_(visitor) {}

  Next entry(const FolderStack& at, const FolderReader::Entry& entry) override {
    if (isLeftOut(hidden_, at.folder(), entry.name)) return Next::goOn;
    folder_ = at.folder();
    folderPath_ = at.path();
    name_ = entry.name;
    setPath(at);
    kind_ = entry.kind ? *entry.kind : kindByLookingUp();
    switch (visitor_.visit(*this)) {
      case WalkStep::stop:
        return Next::stop;
      case WalkStep::skipDescendants:
        return Next::goOn;
      case WalkStep::proceed:
        break;
    }
    return kind_ == FileKind::folder ? Next::enter : Next::goOn;
  }

  bool failed(const FolderStack& at, std::string_view name, int errnoValue) override {
    const Path item = root_.appending(at.path()).appending(name);
    return tell(item, errnoValue);
  }

  bool tell(const Path& item, int errnoValue) {
    const PlatformError error = CocoaError::fromErrno(CocoaError::Operation::listFolder, errnoValue, item);
    return visitor_.failed(item, error) != WalkStep::stop;
  }

 private:
  std::string_view relativePath() const override { return path_; }
  FileKind kind() const override { return kind_; }

  Result<FileAttributes> attributes() const override { return attributesAt(folder_, root_); }

  Result<FileAttributes> attributesBelow(const Path& otherRoot) const override {
    return attributesAt(other_.at(otherRoot, folderPath_), otherRoot);
  }

  std::optional<PlatformError> obstacleToRemoval() const override {
    const int error = removalObstacle(folder_, name_);
    if (error == 0) return std::nullopt;
    return CocoaError::fromErrno(CocoaError::Operation::remove, error, root_.appending(path_));
  }

  Result<FileAttributes> attributesAt(int folder, const Path& root) const {
    if (folder >= 0) {
      if (const auto found = itemAttributes(folder, name_)) return *found;
    }
    return CocoaError::fromErrno(CocoaError::Operation::readFile, errno, root.appending(path_));
  }

  FileKind kindByLookingUp() const {
    const Result<FileAttributes> found = attributes();
    return found ? found->kind : FileKind::unknown;
  }

  void setPath(const FolderStack& at) {
    path_.assign(at.path());
    if (!path_.empty()) path_ += '/';
    path_ += name_;
  }

  const Path& root_;
  Hidden hidden_;
  WalkVisitor& visitor_;
  int folder_ = -1;
  std::string_view folderPath_;
  const char* name_ = "";
  FileKind kind_ = FileKind::unknown;
  std::string path_;
  mutable FolderBelow other_;
};

/// Returns whether the root exists but isn't a folder. Such a root has nothing below it, which isn't a
/// failure.
bool isNoFolder(const PathAt& at, int errnoValue) {
  struct stat status;
  return errnoValue == ENOTDIR && ::fstatat(at.folder(), at.name(), &status, 0) == 0;
}

void walkBy(void (*descend)(Descriptor, TreeWork&), const Path& root, Hidden hidden, WalkVisitor& visitor) {
  Walk walk(root, hidden, visitor);
  const PathAt at(root);
  // Without O_NOFOLLOW: a link given as the root is followed.
  Descriptor folder(at.error() ? -1 : ::openat(at.folder(), at.name(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  const int error = at.error() ? at.error() : errno;
  if (folder.isOpen())
    descend(std::move(folder), walk);
  else if (at.error() || !isNoFolder(at, error))
    walk.tell(root, error);
}

}  // namespace

void walkTree(const Path& root, Hidden hidden, WalkVisitor& visitor) {
  walkBy(descend, root, hidden, visitor);
}

void walkTreeSorted(const Path& root, Hidden hidden, WalkVisitor& visitor) {
  walkBy(descendSorted, root, hidden, visitor);
}

}  // namespace quarn
