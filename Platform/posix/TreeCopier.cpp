#include <cerrno>
#include <fcntl.h>

#include "Platform/posix/ItemCopier.h"
#include "Platform/posix/PathAt.h"
#include "Platform/posix/TreeDescent.h"
#include "Platform/posix/Trees.h"
#include "Platform/system/SystemCalls.h"

namespace quarn {
namespace {

constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

// Accessible only to the owner until the folder is complete. The final mode may forbid writing, so it is set
// last.
constexpr mode_t modeWhileFilling = 0700;

int copyOpenMetadata(int source, int destination) {
  struct stat status;
  return ::fstat(source, &status) == 0 ? copyMetadata(source, status, destination) : errno;
}

bool isSame(const struct stat& a, const struct stat& b) {
  return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

/// Returns 0 if `folder` neither is `source` nor lies inside it; otherwise EINVAL, or the error number if
/// that can't be determined. Climbs to the root by "..", so it follows the real folders and not the text of
/// the path.
int checkNotInside(const struct stat& source, const Path& folder) {
  const PathAt at(folder);
  if (at.error()) return at.error();
  Descriptor current(::openat(at.folder(), at.name(), searchOnly | O_DIRECTORY | O_CLOEXEC));
  struct stat status, previous{};
  for (; current.isOpen(); previous = status) {
    if (::fstat(current.number(), &status) != 0) return errno;
    if (isSame(status, source)) return EINVAL;
    // The root is its own "..".
    if (isSame(status, previous)) return 0;
    current = Descriptor(::openat(current.number(), "..", searchOnly | O_DIRECTORY | O_CLOEXEC));
  }
  // What lies above a folder that may not be searched can't be determined. The copy can't reach it either.
  return errno == EACCES ? 0 : errno;
}

/// Copies what the descent meets. It keeps a second chain of open folders, that of the copy, in step with the
/// first.
class Copy : public TreeWork {
 public:
  Copy(dev_t device, Descriptor root) : device_(device), copy_(std::move(root)) {}

  Next entry(const FolderStack& at, const FolderReader::Entry& entry) override {
    if (entry.kind == FileKind::folder) return Next::enter;
    struct stat status;
    // Looked up because the copy needs mode, owner and times, and because some file systems don't report the
    // kind of an entry.
    if (::fstatat(at.folder(), entry.name, &status, AT_SYMLINK_NOFOLLOW) != 0)
      error_ = errno;
    else if (S_ISDIR(status.st_mode))
      return Next::enter;
    else
      error_ = copyFile({at.folder(), entry.name}, status, {copy_.folder(), entry.name});
    return error_ == 0 ? Next::goOn : Next::stop;
  }

  bool entered(const FolderStack& at) override {
    // EBUSY is what removing a mount point would return as well.
    error_ = isMountedOver(device_, at.folder()) ? EBUSY : 0;
    if (error_ != 0) return false;
    const bool made = ::mkdirat(copy_.folder(), at.name(), modeWhileFilling) == 0;
    error_ = made ? copy_.enter(at.name()) : errno;
    return error_ == 0;
  }

  bool finished(const FolderStack& at) override {
    // While both folders are still open, and after everything inside was written: writing would change the
    // times.
    error_ = copyOpenMetadata(at.folder(), copy_.folder());
    if (error_ == 0) error_ = copy_.leave();
    return error_ == 0;
  }

  bool failed(const FolderStack&, std::string_view, int errnoValue) override {
    error_ = errnoValue;
    return false;
  }

  int error() const { return error_; }

 private:
  dev_t device_;
  FolderStack copy_;
  int error_ = 0;
};

Descriptor openFolder(const PathAt& folder) {
  return Descriptor(::openat(folder.folder(), folder.name(), folderFlags));
}

int fillFolder(dev_t device, const PathAt& source, const PathAt& destination) {
  Descriptor from = openFolder(source);
  if (!from.isOpen()) return errno;
  Descriptor to = openFolder(destination);
  if (!to.isOpen()) return errno;
  // Duplicates, because the descent takes over the descriptors, and the top folder gets its metadata only
  // after the descent.
  const Descriptor top(::fcntl(to.number(), F_DUPFD_CLOEXEC, 0));
  const Descriptor original(::fcntl(from.number(), F_DUPFD_CLOEXEC, 0));
  if (!top.isOpen() || !original.isOpen()) return errno;
  Copy copy(device, std::move(to));
  descend(std::move(from), copy);
  return copy.error() ? copy.error() : copyOpenMetadata(original.number(), top.number());
}

}  // namespace

int copyTree(const PathAt& source, const PathAt& destination, const Path& destinationParent) {
  if (source.error()) return source.error();
  if (destination.error()) return destination.error();
  struct stat status;
  if (::fstatat(source.folder(), source.name(), &status, AT_SYMLINK_NOFOLLOW) != 0) return errno;
  if (!S_ISDIR(status.st_mode))
    return copyFile({source.folder(), source.name()}, status, {destination.folder(), destination.name()});
  // Before anything is made: a copy into the source itself would never end.
  if (const int error = checkNotInside(status, destinationParent)) return error;
  if (::mkdirat(destination.folder(), destination.name(), modeWhileFilling) != 0) return errno;
  const int error = fillFolder(status.st_dev, source, destination);
  // A folder of the copy may already have its final mode, which may forbid removing what it holds.
  if (error != 0) removeCopy(destination);
  return error;
}

int copyItemMetadata(const PathAt& source, const PathAt& destination) {
  if (source.error()) return source.error();
  if (destination.error()) return destination.error();
  const auto open = [](const PathAt& item) {
    return Descriptor(::openat(item.folder(), item.name(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  };
  const Descriptor from = open(source);
  if (!from.isOpen()) return errno;
  const Descriptor to = open(destination);
  return to.isOpen() ? copyOpenMetadata(from.number(), to.number()) : errno;
}

}  // namespace quarn
