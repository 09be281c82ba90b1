#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <vector>

#include "Platform/posix/FileOperations.h"
#include "Platform/posix/PathAt.h"

namespace quarn {
namespace {

// The umask removes the rest (mkdir(2)).
constexpr mode_t allLessMask = 0777;

PlatformError saveError(int errnoValue, const Path& item) {
  return writeError(CocoaError::Operation::save, errnoValue, item);
}

/// Makes one folder. Returns 0 if it now exists, whether it was made or found.
int makeOne(const Path& folder) {
  const PathAt at(folder);
  if (at.error()) return at.error();
  if (::mkdirat(at.folder(), at.name(), allLessMask) == 0) return 0;
  if (errno != EEXIST) return errno;
  struct stat status;
  // Follows links: a link to a folder counts as a folder.
  const bool isFolder = ::fstatat(at.folder(), at.name(), &status, 0) == 0 && S_ISDIR(status.st_mode);
  return isFolder ? 0 : EEXIST;
}

bool stands(const Path& path) {
  const PathAt at(path);
  struct stat status;
  return !at.error() && ::fstatat(at.folder(), at.name(), &status, AT_SYMLINK_NOFOLLOW) == 0;
}

/// Returns the nearest item on the path to the folder that exists. It isn't a folder.
Path obstacle(const Path& folder) {
  Path item = folder.parent();
  while (!stands(item) && item.parent() != item) item = item.parent();
  return item;
}

}  // namespace

Result<void> makeFolder(const Path& folder) {
  // Tries the folder itself first, because its parents usually exist, and then works upwards and down again.
  std::vector<Path> missing{folder};
  while (!missing.empty()) {
    const Path current = missing.back();
    const int error = makeOne(current);
    if (error == 0) {
      missing.pop_back();
    } else if (error == ENOENT && current.parent() != current && !current.parent().text().empty()) {
      missing.push_back(current.parent());
    } else if (error == ENOTDIR) {
      return saveError(ENOTDIR, obstacle(current));
    } else {
      // EEXIST for a parent means that something other than a folder is in the way.
      return saveError(error == EEXIST && missing.size() > 1 ? ENOTDIR : error, current);
    }
  }
  return {};
}

}  // namespace quarn
