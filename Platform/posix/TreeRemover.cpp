#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

#include "Platform/posix/ItemCopier.h"
#include "Platform/posix/TreeDescent.h"
#include "Platform/posix/Trees.h"
#include "Platform/system/SystemCalls.h"

namespace quarn {
namespace {

/// How `unlinkat` says that a folder stands there: EISDIR on Linux, EPERM on a Mac (unlink(2) of both).
/// The latter can mean other things too, which opening the item as a folder then tells.
bool mayBeFolder(int errnoValue) {
  return errnoValue == EISDIR || errnoValue == EPERM;
}

enum class Item { any, ourCopy };

class Removal : public TreeWork {
 public:
  Removal(dev_t device, Item item) : device_(device), item_(item) {}

  Next entry(const FolderStack& at, const FolderReader::Entry& entry) override {
    if (item_ == Item::ourCopy) unlockCopy(at.folder(), entry.name);
    if (entry.kind == FileKind::folder) return Next::enter;
    if (::unlinkat(at.folder(), entry.name, 0) == 0) return Next::goOn;
    // Another program removed it, or it belonged to a file removed before: a Mac keeps the attributes of
    // `name` in `._name` where a volume has no place for them, and removes both together.
    if (errno == ENOENT) return Next::goOn;
    const int refusal = errno;
    // Reached only where the file system doesn't tell what an entry is.
    if (mayBeFolder(refusal) && isFolder(at.folder(), entry.name)) return Next::enter;
    error_ = refusal;
    return Next::stop;
  }

  bool entered(const FolderStack& at) override {
    error_ = isMountedOver(device_, at.folder()) ? EBUSY : 0;
    return error_ == 0;
  }

  bool left(const FolderStack& at, const char* name) override {
    if (::unlinkat(at.folder(), name, AT_REMOVEDIR) == 0 || errno == ENOENT) return true;
    error_ = errno;
    return false;
  }

  bool failed(const FolderStack&, std::string_view, int errnoValue) override {
    // Another program removed a folder, or moved it away. If something is left, the folder above it can't be
    // removed, and that is told.
    if (errnoValue == ENOENT) return true;
    error_ = errnoValue;
    return false;
  }

  int error() const { return error_; }

 private:
  static bool isFolder(int folder, const char* name) {
    struct stat status;
    return ::fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) == 0 && S_ISDIR(status.st_mode);
  }

  dev_t device_;
  Item item_;
  int error_ = 0;
};

int emptyFolder(const PathAt& folder, Item item) {
  Descriptor root(::openat(folder.folder(), folder.name(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  struct stat status;
  if (!root.isOpen() || ::fstat(root.number(), &status) != 0) return errno;
  if (isMountedOver(status.st_dev, root.number())) return EBUSY;
  Removal removal(status.st_dev, item);
  descend(std::move(root), removal);
  return removal.error();
}

int removeItem(const PathAt& item, Item kind) {
  if (item.error()) return item.error();
  if (kind == Item::ourCopy) unlockCopy(item.folder(), item.name());
  if (::unlinkat(item.folder(), item.name(), 0) == 0) return 0;
  const int refusal = errno;
  if (!mayBeFolder(refusal)) return refusal;
  const int error = emptyFolder(item, kind);
  if (error == ENOTDIR) return refusal;
  // A folder that may not be read can still be empty.
  if (error != 0 && error != EACCES) return error;
  if (::unlinkat(item.folder(), item.name(), AT_REMOVEDIR) == 0) return 0;
  return error != 0 ? error : errno;
}

}  // namespace

int removeTree(const PathAt& item) {
  return removeItem(item, Item::any);
}

int removeCopy(const PathAt& item) {
  return removeItem(item, Item::ourCopy);
}

}  // namespace quarn
