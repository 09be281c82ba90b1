#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "Platform/posix/FileOperations.h"
#include "Platform/posix/PathAt.h"
#include "Platform/system/FolderReader.h"
#include "Platform/system/SystemCalls.h"

namespace quarn {
namespace {

// To change a folder a process needs permission to write to it and to search it (unlink(2)).
constexpr int changing = W_OK | X_OK;

/// Returns whether the sticky bit protects the item: in such a folder only root and the owner of the folder
/// or of the item may remove it (unlink(2)).
bool isKeptBySticky(int folder, const RemovalFacts& facts) {
  const uid_t user = ::geteuid();
  struct stat status;
  return user != 0 && facts.owner != user && ::fstatat(folder, ".", &status, 0) == 0 &&
         (status.st_mode & S_ISVTX) != 0 && status.st_uid != user;
}

bool isEmpty(int folder, const char* name) {
  const Descriptor opened(::openat(folder, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  if (!opened.isOpen()) return false;
  FolderReader reader;
  reader.begin(opened.number());
  return !reader.next() && reader.error() == 0;
}

/// A folder that has contents and may not be changed can't be emptied. An empty one needs no emptying, and
/// rmdir(2) asks only its parent's permissions.
int obstacleToEmptying(int folder, const char* name) {
  // AT_EACCESS checks the effective user, as the removal will (faccessat(2)).
  if (::faccessat(folder, name, changing, AT_EACCESS) == 0) return 0;
  const int error = errno;
  return isEmpty(folder, name) ? 0 : error;
}

}  // namespace

int removalObstacle(int folder, const char* name) {
  const auto facts = removalFacts(folder, name);
  if (!facts) return errno == ENOENT ? 0 : errno;
  if (facts->refusal != 0) return facts->refusal;
  if (facts->isMountPoint) return EBUSY;
  if (isKeptBySticky(folder, *facts)) return EPERM;
  return facts->isFolder ? obstacleToEmptying(folder, name) : 0;
}

int removalObstacle(const Path& item) {
  const PathAt parent(item.parent());
  if (parent.error()) return parent.error();
  const Descriptor folder(::openat(parent.folder(), parent.name(), searchOnly | O_DIRECTORY | O_CLOEXEC));
  if (!folder.isOpen()) return errno == ENOENT ? 0 : errno;
  const std::string name = item.lastComponent();
  struct stat status;
  if (::fstatat(folder.number(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0)
    return errno == ENOENT ? 0 : errno;
  if (::faccessat(parent.folder(), parent.name(), changing, AT_EACCESS) != 0) return errno;
  return removalObstacle(folder.number(), name.c_str());
}

}  // namespace quarn
