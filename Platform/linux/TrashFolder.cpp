#include "Platform/linux/TrashFolder.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <optional>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include "Platform/linux/MountTable.h"
#include "Platform/posix/PathAt.h"
#include "Platform/posix/ResolvedPath.h"

namespace quarn {
namespace {

constexpr mode_t ownersOnly = 0700;
// Everybody may look up their own Trash here and nobody may list those of others. The sticky bit keeps people
// from removing each other's.
constexpr mode_t everybodysOwn = 01333;

/// Returns nothing, with `errno` set, on failure.
std::optional<dev_t> device(const Path& folder) {
  const PathAt at(folder);
  struct stat status;
  if (at.error()) errno = at.error();
  if (at.error() || ::fstatat(at.folder(), at.name(), &status, 0) != 0) return std::nullopt;
  return status.st_dev;
}

bool isMountPoint(const std::vector<MountedVolume>& volumes, const Path& folder) {
  return std::any_of(volumes.begin(), volumes.end(),
                     [&folder](const MountedVolume& volume) { return volume.mountPoint == folder; });
}

/// Returns the mount point of the volume that holds a folder, or nothing, with `errno` set, if a folder on
/// the way can't be looked up: it would be taken for the top, and get a Trash that nobody looks into.
/// Compares device numbers, which show every mount, and the mount table, because a volume may share its
/// device number with the folder above it (a bind mount).
std::optional<Path> topOfVolume(const std::vector<MountedVolume>& volumes, Path folder) {
  const auto volume = device(folder);
  while (volume && !isMountPoint(volumes, folder) && folder.parent() != folder) {
    const auto above = device(folder.parent());
    if (!above) return std::nullopt;
    if (above != volume) break;
    folder = folder.parent();
  }
  return volume ? std::optional(folder) : std::nullopt;
}

/// Opens a folder, or makes it first. Refuses a link, which could lead anywhere.
Descriptor openOrMake(int parent, const std::string& name, mode_t mode) {
  const bool made = ::mkdirat(parent, name.c_str(), ownersOnly) == 0;
  if (!made && errno != EEXIST) return {};
  // mkdir(2) applies the umask, so these bits have to be set afterwards.
  if (made && mode != ownersOnly) ::fchmodat(parent, name.c_str(), mode, 0);
  return Descriptor(::openat(parent, name.c_str(), O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
}

TrashFolder result(Path path, Descriptor descriptor) {
  const int error = descriptor.isOpen() ? 0 : errno;
  return {std::move(path), std::move(descriptor), error};
}

TrashFolder homeTrash(const Path& home) {
  const Descriptor parent = openAt(home, O_PATH | O_DIRECTORY);
  if (!parent.isOpen()) return result({}, {});
  return result(home.appending(".Trash"), openOrMake(parent.number(), ".Trash", ownersOnly));
}

TrashFolder volumeTrash(const Path& top) {
  const Descriptor parent = openAt(top, O_PATH | O_DIRECTORY);
  if (!parent.isOpen()) return result({}, {});
  const Descriptor all = openOrMake(parent.number(), ".Trashes", everybodysOwn);
  if (!all.isOpen()) return result({}, {});
  const std::string user = std::to_string(::getuid());
  return result(top.appending(".Trashes/" + user), openOrMake(all.number(), user, ownersOnly));
}

}  // namespace

TrashFolder TrashFolder::forItemsIn(const Path& folder, const Path& home) {
  const auto volumes = MountTable::volumes().value_or(std::vector<MountedVolume>{});
  const auto top = topOfVolume(volumes, folder);
  if (!top) return result({}, {});
  const auto topOfHome = topOfVolume(volumes, resolved(home).valueOr(home));
  if (!topOfHome && errno != ENOENT) return result({}, {});
  return top == topOfHome ? homeTrash(home) : volumeTrash(*top);
}

}  // namespace quarn
