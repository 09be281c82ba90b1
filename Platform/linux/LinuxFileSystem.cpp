#include "Platform/linux/LinuxFileSystem.h"

#include "Platform/linux/Mover.h"
#include "Platform/linux/TreeRemover.h"
#include "Platform/posix/PathAt.h"
#include "Platform/posix/ResolvedPath.h"
#include "Platform/posix/WriteError.h"

namespace quarn {

using CocoaError::Operation;

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

Result<void> LinuxFileSystem::remove(const Path& item) {
  const int error = removeTree(PathAt(item));
  if (error == 0) return {};
  return CocoaError::fromErrno(Operation::remove, error, item);
}

Result<void> LinuxFileSystem::move(const Path& source, const Path& destination) {
  const int error = moveItem(PathAt(source), PathAt(destination), destination.parent());
  if (error == 0) return {};
  return writeError(Operation::move, error, source, destination);
}

}  // namespace quarn
