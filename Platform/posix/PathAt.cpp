#include "Platform/posix/PathAt.h"

#include <cerrno>
#include <climits>
#include <fcntl.h>

namespace quarn {

PathAt::PathAt(const Path& path) : rest_(path.text()) {
  if (path.holdsNul()) {
    error_ = EINVAL;
    rest_.clear();
    return;
  }
  walkTo(PATH_MAX - 1);
}

int PathAt::folder() const {
  return holder_.isOpen() ? holder_.number() : AT_FDCWD;
}

void PathAt::walkTo(std::size_t longest) {
  while (error_ == 0 && rest_.size() > longest) {
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

}  // namespace quarn
