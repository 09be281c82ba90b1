#include "Platform/linux/LinuxPlatform.h"
#include "Platform/posix/ResolvedPath.h"

namespace quarn {

Result<Path> LinuxFileSystem::realPath(const Path& path) const {
  return resolved(path);
}

Path LinuxFileSystem::standardized(const Path& path) const {
  if (goesUp(path)) {
    if (const auto found = resolved(path)) return *found;
  }
  return path.simplified();
}

}  // namespace quarn
