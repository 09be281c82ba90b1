#include "Platform/posix/FileReader.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

namespace quarn {

int readWhole(const PathAt& file, std::string& content) {
  if (file.error()) return file.error();
  const Descriptor opened(::openat(file.folder(), file.name(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
  struct stat status;
  if (!opened.isOpen() || ::fstat(opened.number(), &status) != 0) return errno;
  // Nothing says when, or whether, another process would ever write into it.
  if (S_ISFIFO(status.st_mode)) return ESPIPE;
  // One byte more than expected, so that the end shows at once.
  std::size_t filled = 0;
  for (content.resize(static_cast<std::size_t>(status.st_size) + 1);;) {
    const ssize_t count = ::read(opened.number(), content.data() + filled, content.size() - filled);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return errno;
    if (count == 0) break;
    filled += static_cast<std::size_t>(count);
    if (filled == content.size()) content.resize(content.size() * 2);
  }
  content.resize(filled);
  return 0;
}

}  // namespace quarn
