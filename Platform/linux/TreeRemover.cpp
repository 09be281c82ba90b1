#include "Platform/linux/TreeRemover.h"

#include <cerrno>
#include <fcntl.h>

#include "Platform/posix/TreeDescent.h"

namespace quarn {
namespace {

class Removal : public TreeWork {
 public:
  Next entry(const FolderStack& at, const DirectoryReader::Entry& entry) override {
    if (entry.kind == FileKind::directory) return Next::enter;
    if (::unlinkat(at.folder(), entry.name, 0) == 0) return Next::goOn;
    // Reached only where the file system doesn't tell what an entry is.
    if (errno == EISDIR) return Next::enter;
    // Someone else was faster, and gone is what it shall be.
    if (errno == ENOENT) return Next::goOn;
    error_ = errno;
    return Next::stop;
  }

  bool left(const FolderStack& at, const char* name) override {
    if (::unlinkat(at.folder(), name, AT_REMOVEDIR) == 0 || errno == ENOENT) return true;
    error_ = errno;
    return false;
  }

  bool failed(const FolderStack&, std::string_view, int errnoValue) override {
    // Somebody else removed a folder, or moved it away. If something is left, the folder above it can't be
    // removed, and that is told.
    if (errnoValue == ENOENT) return true;
    error_ = errnoValue;
    return false;
  }

  int error() const { return error_; }

 private:
  int error_ = 0;
};

int emptyFolder(const PathAt& folder) {
  Descriptor root(::openat(folder.folder(), folder.name(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  if (!root.isOpen()) return errno;
  Removal removal;
  descend(std::move(root), removal);
  return removal.error();
}

}  // namespace

int removeTree(const PathAt& item) {
  if (item.error()) return item.error();
  if (::unlinkat(item.folder(), item.name(), 0) == 0) return 0;
  if (errno != EISDIR) return errno;
  const int error = emptyFolder(item);
  // A folder that may not be read can still be empty.
  if (error != 0 && error != EACCES) return error;
  if (::unlinkat(item.folder(), item.name(), AT_REMOVEDIR) == 0) return 0;
  return error != 0 ? error : errno;
}

}  // namespace quarn
