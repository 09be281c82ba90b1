#include "Platform/posix/PathAt.h"

#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quarn {
namespace {

// Far more than any property list or record needs. A larger file is a mistake, or meant to exhaust our
// memory.
constexpr off_t longestFile = 256 * 1024 * 1024;

}  // namespace

PathAt::PathAt(const Path& path) : rest_(path.text()) {
  if (path.holdsNul()) {
    error_ = EINVAL;
    rest_.clear();
    return;
  }
  // PATH_MAX includes the NUL at the end (limits.h).
  walkTo(PATH_MAX - 1);
}

int PathAt::folder() const {
  return holder_.isOpen() ? holder_.number() : AT_FDCWD;
}

void PathAt::walkTo(std::size_t longest) {
  while (error_ == 0 && rest_.size() > longest) {
    // Cut at the last slash that fits, so that as few folders as possible are opened.
    const std::size_t slash = rest_.rfind('/', longest);
    if (slash == std::string::npos || slash == 0) {
      error_ = ENAMETOOLONG;
      return;
    }
    const std::string beginning = rest_.substr(0, slash);
    Descriptor next(::openat(folder(), beginning.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!next.isOpen()) {
      error_ = errno;
      return;
    }
    holder_ = std::move(next);
    rest_.erase(0, rest_.find_first_not_of('/', slash));
  }
}

Descriptor openAt(const Path& path, int flags) {
  const PathAt at(path);
  if (at.error()) {
    errno = at.error();
    return {};
  }
  return Descriptor(::openat(at.folder(), at.name(), flags | O_CLOEXEC));
}

std::optional<std::string> linkText(int folder, const char* name) {
  for (std::string text(256, '\0');; text.resize(text.size() * 2)) {
    const ssize_t count = ::readlinkat(folder, name, text.data(), text.size());
    if (count < 0) return std::nullopt;
    if (static_cast<std::size_t>(count) == text.size()) continue;  // full, so perhaps truncated (readlink(2))
    text.resize(static_cast<std::size_t>(count));
    return text;
  }
}

namespace {

/// Opens a regular file and describes it. Returns 0 or the error number.
int openRegular(const PathAt& file, Descriptor& opened, struct stat& status) {
  if (file.error()) return file.error();
  // Without O_NONBLOCK, opening a FIFO would wait for a writer.
  opened = Descriptor(::openat(file.folder(), file.name(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
  if (!opened.isOpen() || ::fstat(opened.number(), &status) != 0) return errno;
  if (S_ISDIR(status.st_mode)) return EISDIR;
  // Anything but a regular file may never end, or wait for a writer that never comes.
  return S_ISREG(status.st_mode) ? 0 : ESPIPE;
}

/// Reads until the buffer is full or the file ends, and adds what was read to `filled`. Returns 0 or the
/// error number. `size` is that of the file, 0 if it isn't known. A read that gives less than was asked for,
/// and ends there, has reached the end: this saves the read that would say so.
int fill(const Descriptor& file, off_t size, std::string& buffer, std::size_t& filled) {
  while (filled < buffer.size()) {
    const ssize_t count = ::read(file.number(), buffer.data() + filled, buffer.size() - filled);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return errno;
    if (count == 0) break;
    filled += static_cast<std::size_t>(count);
    if (filled == static_cast<std::size_t>(size)) break;
  }
  return 0;
}

}  // namespace

int readWhole(const PathAt& file, std::string& content) {
  Descriptor opened;
  struct stat status;
  int error = openRegular(file, opened, status);
  if (error == 0 && status.st_size > longestFile) error = EFBIG;
  if (error != 0) return error;
  // One byte more than expected, so that one more read reports the end of the file instead of filling the
  // buffer. The size is only a first guess: files below /proc report 0, and a file can grow while it is read.
  content.resize(static_cast<std::size_t>(status.st_size) + 1);
  std::size_t filled = 0;
  while ((error = fill(opened, status.st_size, content, filled)) == 0 && filled == content.size()) {
    if (filled > static_cast<std::size_t>(longestFile)) return EFBIG;
    content.resize(content.size() * 2);
  }
  content.resize(filled);
  return error;
}

int readStart(const PathAt& file, std::size_t count, std::string& content) {
  Descriptor opened;
  struct stat status;
  int error = openRegular(file, opened, status);
  if (error != 0) return error;
  content.resize(count);
  std::size_t filled = 0;
  error = fill(opened, status.st_size, content, filled);
  content.resize(filled);
  return error;
}

}  // namespace quarn
