#include "Platform/posix/ItemCopier.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

#include "Platform/posix/Descriptor.h"
#include "Platform/posix/PathAt.h"

namespace quarn {
namespace {

/// Removes the unfinished copy after an error, and returns the error.
int completed(int error, const EntryAt& copy) {
  if (error != 0) ::unlinkat(copy.folder, copy.name, 0);
  return error;
}

int copyRegular(const EntryAt& source, const EntryAt& destination) {
  // O_NONBLOCK: if a FIFO has replaced the file since it was looked at, open(2) must not wait for a writer.
  const Descriptor from(::openat(source.folder, source.name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  struct stat status;
  // Looked up again on the descriptor, because the item may have been replaced since.
  if (!from.isOpen() || ::fstat(from.number(), &status) != 0) return errno;
  // Readable by the owner alone until its content is complete and its own mode is set.
  const Descriptor to(::openat(destination.folder, destination.name,
                               O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
  if (!to.isOpen()) return errno;
  int error = copyContent(from.number(), status, to.number());
  if (error == 0) error = copyMetadata(from.number(), status, to.number());
  return completed(error, destination);
}

int copyLink(const EntryAt& source, const struct stat& status, const EntryAt& destination) {
  const auto target = linkText(source.folder, source.name);
  if (!target) return errno;
  if (::symlinkat(target->c_str(), destination.folder, destination.name) != 0) return errno;
  return completed(copyLinkMetadata(source, status, destination), destination);
}

int copyFifo(const struct stat& status, const EntryAt& destination) {
  if (::mkfifoat(destination.folder, destination.name, 0600) != 0) return errno;
  return completed(copyFifoMetadata(status, destination), destination);
}

}  // namespace

int copyFile(const EntryAt& source, const struct stat& status, const EntryAt& destination) {
  if (S_ISREG(status.st_mode)) return copyRegular(source, destination);
  if (S_ISLNK(status.st_mode)) return copyLink(source, status, destination);
  if (S_ISFIFO(status.st_mode)) return copyFifo(status, destination);
  return ENOTSUP;
}

}  // namespace quarn
