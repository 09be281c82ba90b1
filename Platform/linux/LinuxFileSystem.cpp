#include "Platform/linux/LinuxPlatform.h"
#include "Platform/posix/ResolvedPath.h"

namespace quarn {

Path LinuxFileSystem::resolvingLinks(const Path& path) const {
  const auto found = resolved(path);
  return found ? *found : standardized(path);
}

Path LinuxFileSystem::standardized(const Path& path) const {
  if (goesUp(path)) {
    if (const auto found = resolved(path)) return *found;
  }
  return path.simplified();
}

}  // namespace quarn
