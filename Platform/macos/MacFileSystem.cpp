#include "Platform/macos/CustomaryPath.h"
#include "Platform/macos/MacPlatform.h"
#include "Platform/posix/ResolvedPath.h"

namespace quarn {

// Not left to Foundation, which decomposes accented letters in the paths that it returns.
Result<Path> MacFileSystem::realPath(const Path& path) const {
  const auto found = resolved(path);
  if (!found) return found;
  return withoutPrivateFolder(withoutDataVolume(*found));
}

Path MacFileSystem::standardized(const Path& path) const {
  const auto found = goesUp(path) ? resolved(path).asOptional() : std::nullopt;
  return withoutPrivateFolder(found ? *found : path.simplified());
}

}  // namespace quarn
