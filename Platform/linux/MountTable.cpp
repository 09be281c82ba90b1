#include "Platform/linux/MountTable.h"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <mntent.h>

namespace quarn {
namespace {

struct CloseTable {
  void operator()(FILE* table) const { ::endmntent(table); }
};

constexpr const char* customaryTable = "/etc/mtab";
constexpr const char* kernelsTable = "/proc/self/mounts";

/// Calls `take` for each line of a mount table. Returns false, with `errno` set, if the table can't be read.
template <class Take>
bool forEachEntry(const char* table, Take take) {
  const std::unique_ptr<FILE, CloseTable> file(::setmntent(table, "re"));
  if (!file) return false;
  mntent entry;
  // Room for two long paths and the options: a longer line would be cut (getmntent_r(3)).
  std::vector<char> line(16 * 1024);
  while (::getmntent_r(file.get(), &entry, line.data(), static_cast<int>(line.size()))) take(entry);
  return true;
}

const Path startupMountPoint("/");
const Path volumesFolder("/Volumes");

bool isVolume(const Path& mountPoint) {
  return mountPoint == startupMountPoint || mountPoint.parent() == volumesFolder;
}

/// A later mount hides an earlier one on the same mount point, so the last line replaces it.
void add(std::vector<MountedVolume>& volumes, MountedVolume volume) {
  volumes.erase(std::remove_if(volumes.begin(), volumes.end(),
                               [&](const auto& other) { return other.mountPoint == volume.mountPoint; }),
                volumes.end());
  volumes.push_back(std::move(volume));
}

bool holds(const Path& mountPoint, const Path& path) {
  if (mountPoint == startupMountPoint || mountPoint == path) return true;
  const std::string prefix = mountPoint.text() + "/";
  return path.text().compare(0, prefix.size(), prefix) == 0;
}

}  // namespace

std::string MountedVolume::name() const {
  return mountPoint == startupMountPoint ? "Macintosh HD" : mountPoint.lastComponent();
}

bool MountedVolume::isHidden() const {
  return mountPoint.lastComponent().front() == '.';
}

std::optional<std::vector<MountedVolume>> MountTable::volumes() {
  // A freshly unpacked system may lack /etc/mtab, which is usually a link to the kernel’s own table.
  auto found = volumesIn(customaryTable);
  return found ? found : volumesIn(kernelsTable);
}

std::optional<std::vector<MountedVolume>> MountTable::volumesIn(const char* table) {
  std::vector<MountedVolume> volumes;
  const bool wasRead = forEachEntry(table, [&volumes](const mntent& entry) {
    const Path mountPoint(entry.mnt_dir);
    if (isVolume(mountPoint))
      add(volumes, {mountPoint, entry.mnt_type, ::hasmntopt(&entry, MNTOPT_RO) != nullptr});
  });
  if (!wasRead) return std::nullopt;
  // In a changed root (chroot(2)) the table may have no line for "/".
  const auto isStartup = [](const auto& volume) { return volume.mountPoint == startupMountPoint; };
  if (std::none_of(volumes.begin(), volumes.end(), isStartup))
    volumes.insert(volumes.begin(), {startupMountPoint, "", false});
  return volumes;
}

std::optional<std::vector<Path>> MountTable::mountPoints() {
  std::vector<Path> mountPoints;
  const auto keep = [&mountPoints](const mntent& entry) { mountPoints.emplace_back(entry.mnt_dir); };
  if (!forEachEntry(customaryTable, keep) && !forEachEntry(kernelsTable, keep)) return std::nullopt;
  return mountPoints;
}

MountedVolume MountTable::holding(const std::vector<MountedVolume>& volumes, const Path& path) {
  MountedVolume best{startupMountPoint, "", false};
  for (const MountedVolume& volume : volumes) {
    // The longest mount point that contains the path is the innermost one.
    if (holds(volume.mountPoint, path) && volume.mountPoint.text().size() >= best.mountPoint.text().size())
      best = volume;
  }
  return best;
}

}  // namespace quarn
