#include "Platform/posix/ResolvedPath.h"

#include <cerrno>
#include <cstdlib>
#include <memory>
#include <string>
#include <unistd.h>

#include "Platform/CocoaError.h"

namespace quarn {
namespace {

struct Free {
  void operator()(char* text) const { std::free(text); }
};

/// Links that lead in a circle lead to nothing, as sure as a missing item.
PlatformError failure(int errnoValue, const Path& path) {
  return CocoaError::fromErrno(CocoaError::Operation::readFile, errnoValue == ELOOP ? ENOENT : errnoValue,
                               path);
}

}  // namespace

Result<Path> resolved(const Path& path) {
  // realpath(3) would stop at the NUL and resolve another path.
  if (path.holdsNul()) return failure(ENOENT, path);
  const std::unique_ptr<char, Free> text(::realpath(path.text().c_str(), nullptr));
  if (!text) return failure(errno, path);
  return Path(text.get());
}

bool goesUp(const Path& path) {
  return ("/" + path.text() + "/").find("/../") != std::string::npos;
}

Path withParentResolved(const Path& path) {
  const auto parent = resolved(path.parent());
  // The root is its own parent; appending its name would be wrong.
  return parent && *parent != path ? parent->appending(path.lastComponent()) : path;
}

Path currentFolder() {
  const std::unique_ptr<char, Free> text(::getcwd(nullptr, 0));
  // A folder that has been removed has no path any more (ENOENT, getcwd(3)).
  return Path(text ? text.get() : "/");
}

}  // namespace quarn
