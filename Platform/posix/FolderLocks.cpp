#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>

#include "Platform/CocoaError.h"
#include "Platform/posix/PathAt.h"
#include "Platform/posix/PosixPlatform.h"

namespace quarn {
namespace {

class HeldFolder : public Lock {
 public:
  explicit HeldFolder(Descriptor folder) : folder_(std::move(folder)) {}

 private:
  Descriptor folder_;
};

/// Some volumes can't lock a folder: SMB locks only files and returns EISDIR, others have no locks at all.
bool isUnsupported(int errnoValue) {
  return errnoValue == ENOTSUP || errnoValue == EOPNOTSUPP || errnoValue == EISDIR || errnoValue == EINVAL ||
         errnoValue == ENOLCK || errnoValue == ENOSYS || errnoValue == EBADF;
}

/// Returns 0 or the error number.
int take(int folder, const std::function<void()>& waiting) {
  // First without waiting, to find out whether `waiting` must be called.
  if (::flock(folder, LOCK_EX | LOCK_NB) == 0) return 0;
  if (errno == EWOULDBLOCK) {
    waiting();
    while (::flock(folder, LOCK_EX) != 0) {
      if (errno != EINTR) return errno;
    }
    return 0;
  }
  return isUnsupported(errno) ? 0 : errno;
}

}  // namespace

Result<std::shared_ptr<Lock>> FolderLocks::lock(const Path& folder, const std::function<void()>& waiting) {
  // A second flock(2) on another descriptor would wait for our own first one for ever.
  std::weak_ptr<Lock>& known = held_[folder.text()];
  if (auto lock = known.lock()) return lock;
  Descriptor opened = openAt(folder, O_RDONLY | O_DIRECTORY);
  const int error = opened.isOpen() ? take(opened.number(), waiting) : errno;
  if (error != 0) return CocoaError::fromErrno(CocoaError::Operation::readFile, error, folder);
  std::shared_ptr<Lock> lock = std::make_shared<HeldFolder>(std::move(opened));
  known = lock;
  return lock;
}

}  // namespace quarn
