#include "Platform/posix/TreeWalker.h"

#include <cerrno>
#include <fcntl.h>
#include <string>

#include "Platform/CocoaError.h"
#include "Platform/posix/HiddenFlag.h"
#include "Platform/posix/PathAt.h"
#include "Platform/posix/Status.h"
#include "Platform/posix/TreeDescent.h"

namespace quarn {
namespace {

class Walk : public TreeWork, private WalkItem {
 public:
  Walk(const Path& root, Hidden hidden, WalkVisitor& visitor)
      : root_(root), hidden_(hidden), visitor_(visitor) {}

  Next entry(const FolderStack& at, const DirectoryReader::Entry& entry) override {
    if (isLeftOut(at.folder(), entry.name)) return Next::goOn;
    folder_ = at.folder();
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
    return kind_ == FileKind::directory ? Next::enter : Next::goOn;
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

  Result<FileAttributes> attributes() const override {
    struct stat status;
    if (::fstatat(folder_, name_, &status, AT_SYMLINK_NOFOLLOW) == 0) return attributesFrom(status);
    return CocoaError::fromErrno(CocoaError::Operation::readFile, errno, root_.appending(path_));
  }

  bool isLeftOut(int folder, const char* name) const {
    if (hidden_ == Hidden::included) return false;
    return name[0] == '.' || (hidden_ == Hidden::skipped && hasHiddenFlag(folder, name));
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
  const char* name_ = "";
  FileKind kind_ = FileKind::unknown;
  std::string path_;
};

/// A root that is there but no folder has nothing below it, which is no failure.
bool isNoFolder(const PathAt& at, int errnoValue) {
  struct stat status;
  return errnoValue == ENOTDIR && ::fstatat(at.folder(), at.name(), &status, 0) == 0;
}

}  // namespace

void walkTree(const Path& root, Hidden hidden, WalkVisitor& visitor) {
  Walk walk(root, hidden, visitor);
  const PathAt at(root);
  Descriptor folder(at.error() ? -1 : ::openat(at.folder(), at.name(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  const int error = at.error() ? at.error() : errno;
  if (folder.isOpen())
    descend(std::move(folder), walk);
  else if (at.error() || !isNoFolder(at, error))
    walk.tell(root, error);
}

}  // namespace quarn
