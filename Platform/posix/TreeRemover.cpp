#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

#include "Platform/posix/ItemCopier.h"
#include "Platform/posix/TreeDescent.h"
#include "Platform/posix/Trees.h"
#include "Platform/system/SystemCalls.h"

namespace quarn {
namespace {

/// Returns whether an error of `unlinkat` can mean that the item is a folder. Linux returns EISDIR and macOS
/// EPERM (unlink(2) of both). EPERM has other meanings too; opening the item as a folder then decides.
bool mayBeFolder(int errnoValue) {
  return errnoValue == EISDIR || errnoValue == EPERM;
}

/// A copy of ours may be unlocked before it is removed. Anything else stays locked.
enum class Item { any, ourCopy };

class Removal : public TreeWork {
 public:
  Removal(dev_t device, Item item) : device_(device), item_(item) {}

  Next entry(const FolderStack& at, const FolderReader::Entry& entry) override {
    // Before the removal: a lock on the entry would forbid it.
    if (item_ == Item::ourCopy) unlockCopy(at.folder(), entry.name);
    if (entry.kind == FileKind::folder) return Next::enter;
    if (::unlinkat(at.folder(), entry.name, 0) == 0) return Next::goOn;
    // Another program has removed the item, or it belonged to a file that was removed before it: on a volume
    // without extended attributes macOS keeps those of `name` in `._name`, and removes both together.
    if (errno == ENOENT) return Next::goOn;
    const int refusal = errno;
    // Happens only on file systems that don't report the kind of an entry.
    if (mayBeFolder(refusal) && isFolder(at.folder(), entry.name)) return Next::enter;
    error_ = refusal;
    return Next::stop;
  }

  bool entered(const FolderStack& at) override {
    error_ = isMountedOver(device_, at.folder()) ? EBUSY : 0;
    return error_ == 0;
  }

  bool left(const FolderStack& at, const char* name) override {
    // ENOENT: another program has removed the folder meanwhile.
    if (::unlinkat(at.folder(), name, AT_REMOVEDIR) == 0 || errno == ENOENT) return true;
    error_ = errno;
    return false;
  }

  bool failed(const FolderStack&, std::string_view, int errnoValue) override {
    // Another program has removed the folder or moved it elsewhere. If something is left, removing the parent
    // folder fails, and that failure is reported.
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
  // Without looking first: for anything but a folder this one call is enough.
  if (::unlinkat(item.folder(), item.name(), 0) == 0) return 0;
  const int refusal = errno;
  if (!mayBeFolder(refusal)) return refusal;
  const int error = emptyFolder(item, kind);
  // It wasn't a folder after all, so the first error is the one to report.
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
