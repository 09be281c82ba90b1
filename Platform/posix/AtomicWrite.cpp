#include <atomic>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>

#include "Platform/posix/FileOperations.h"
#include "Platform/posix/LeftoverFiles.h"
#include "Platform/posix/PathAt.h"
#include "Platform/system/SystemCalls.h"

namespace quarn {
namespace {

// The permission bits and the set-user-ID, set-group-ID and sticky bits (chmod(2)).
constexpr mode_t permissions = 07777;

/// The temporary file. The destructor removes it unless it has taken the place of the target.
class TemporaryFile {
 public:
  explicit TemporaryFile(const Path& folder) : folder_(folder) {}
  ~TemporaryFile() {
    if (at_ && file_.isOpen()) ::unlinkat(at_->folder(), at_->name(), 0);
  }

  int create() {
    static std::atomic<unsigned> count{0};
    // The process identifier makes the name unique among running processes and the count makes it unique
    // within one. EEXIST can still occur: an earlier process may have had the same identifier.
    do {
      at_.emplace(folder_.appending(temporaryName(::getpid(), ++count)));
      if (at_->error()) return at_->error();
      file_ = Descriptor(
          ::openat(at_->folder(), at_->name(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666));
    } while (!file_.isOpen() && errno == EEXIST);
    return file_.isOpen() ? 0 : errno;
  }

  int write(std::string_view content) {
    while (!content.empty()) {
      const ssize_t count = ::write(file_.number(), content.data(), content.size());
      if (count < 0 && errno == EINTR) continue;
      if (count < 0) return errno;
      content.remove_prefix(static_cast<std::size_t>(count));
    }
    // Without this a power cut can leave the new name on an empty file. EINVAL: the volume has no such
    // operation (fsync(2)).
    const int error = syncFile(file_.number());
    return error == EINVAL ? 0 : error;
  }

  int setMode(mode_t mode) { return ::fchmod(file_.number(), mode) == 0 ? 0 : errno; }

  int takePlace(const PathAt& file) {
    // rename(2) replaces the target atomically, so a reader sees either the old file or the new one.
    if (::renameat(at_->folder(), at_->name(), file.folder(), file.name()) != 0) return errno;
    at_.reset();
    return 0;
  }

 private:
  Path folder_;
  std::optional<PathAt> at_;
  Descriptor file_;
};

}  // namespace

int writeAtomically(const Path& file, std::string_view content) {
  const PathAt target(file);
  if (target.error()) return target.error();
  struct stat existing;
  const bool replaces = ::fstatat(target.folder(), target.name(), &existing, AT_SYMLINK_NOFOLLOW) == 0;
  // Before our own file is made, so that a full disk gets the space of the leftovers back first.
  removeLeftoverFiles(file.parent());
  TemporaryFile temporary(file.parent());
  int error = temporary.create();
  if (error == 0) error = temporary.write(content);
  // The mode of a link is meaningless.
  if (error == 0 && replaces && S_ISREG(existing.st_mode))
    error = temporary.setMode(existing.st_mode & permissions);
  return error == 0 ? temporary.takePlace(target) : error;
}

}  // namespace quarn
