#include "Platform/linux/TreeCopier.h"

#include <cerrno>
#include <fcntl.h>

#include "Platform/linux/FileCopier.h"
#include "Platform/linux/TreeRemover.h"
#include "Platform/posix/TreeDescent.h"

namespace quarn {
namespace {

constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

// Ours alone until it is complete; the real mode may forbid writing.
constexpr mode_t modeWhileFilling = 0700;

int copyFolderMetadata(int source, int destination) {
  struct stat status;
  return ::fstat(source, &status) == 0 ? copyMetadata(source, status, destination) : errno;
}

/// Keeps a second chain of folders, that of the copy, in step with the first.
class Copy : public TreeWork {
 public:
  explicit Copy(Descriptor root) : copy_(std::move(root)) {}

  Next entry(const FolderStack& at, const DirectoryReader::Entry& entry) override {
    if (entry.kind == FileKind::directory) return Next::enter;
    struct stat status;
    if (::fstatat(at.folder(), entry.name, &status, AT_SYMLINK_NOFOLLOW) != 0)
      error_ = errno;
    else if (S_ISDIR(status.st_mode))
      return Next::enter;
    else
      error_ = copyFile({at.folder(), entry.name}, status, {copy_.folder(), entry.name});
    return error_ == 0 ? Next::goOn : Next::stop;
  }

  bool entered(const FolderStack& at) override {
    const bool made = ::mkdirat(copy_.folder(), at.name(), modeWhileFilling) == 0;
    error_ = made ? copy_.enter(at.name()) : errno;
    return error_ == 0;
  }

  bool finished(const FolderStack& at) override {
    error_ = copyFolderMetadata(at.folder(), copy_.folder());
    if (error_ == 0) error_ = copy_.leave();
    return error_ == 0;
  }

  bool failed(const FolderStack&, std::string_view, int errnoValue) override {
    error_ = errnoValue;
    return false;
  }

  int error() const { return error_; }

 private:
  FolderStack copy_;
  int error_ = 0;
};

int fillFolder(const PathAt& source, const PathAt& destination) {
  Descriptor from(::openat(source.folder(), source.name(), folderFlags));
  if (!from.isOpen()) return errno;
  Descriptor to(::openat(destination.folder(), destination.name(), folderFlags));
  if (!to.isOpen()) return errno;
  const Descriptor top(::fcntl(to.number(), F_DUPFD_CLOEXEC, 0));
  const Descriptor original(::fcntl(from.number(), F_DUPFD_CLOEXEC, 0));
  if (!top.isOpen() || !original.isOpen()) return errno;
  Copy copy(std::move(to));
  descend(std::move(from), copy);
  return copy.error() ? copy.error() : copyFolderMetadata(original.number(), top.number());
}

}  // namespace

int copyTree(const PathAt& source, const PathAt& destination) {
  struct stat status;
  if (::fstatat(source.folder(), source.name(), &status, AT_SYMLINK_NOFOLLOW) != 0) return errno;
  if (!S_ISDIR(status.st_mode))
    return copyFile({source.folder(), source.name()}, status, {destination.folder(), destination.name()});
  if (::mkdirat(destination.folder(), destination.name(), modeWhileFilling) != 0) return errno;
  const int error = fillFolder(source, destination);
  if (error != 0) removeTree(destination);
  return error;
}

}  // namespace quarn
