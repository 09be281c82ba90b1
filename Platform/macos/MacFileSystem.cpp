#include "Platform/macos/CustomaryPath.h"
#include "Platform/macos/MacPlatform.h"
#include "Platform/posix/ResolvedPath.h"

namespace quarn {

// Not left to Foundation, which decomposes accented letters in the paths that it returns.
Path MacFileSystem::resolvingLinks(const Path& path) const {
  const auto found = resolved(path);
  return found ? withoutPrivateFolder(withoutDataVolume(*found)) : standardized(path);
}

Path MacFileSystem::standardized(const Path& path) const {
  const auto found = goesUp(path) ? resolved(path) : std::nullopt;
  return withoutPrivateFolder(found ? *found : path.simplified());
}

}  // namespace quarn
