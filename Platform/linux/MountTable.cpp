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

const Path startupMountPoint("/");
const Path volumesFolder("/Volumes");

bool isVolume(const Path& mountPoint) {
  return mountPoint == startupMountPoint || mountPoint.parent() == volumesFolder;
}

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
  // A system that was just unpacked may lack the customary name of the kernel's table.
  auto found = volumesIn("/etc/mtab");
  return found ? found : volumesIn("/proc/self/mounts");
}

std::optional<std::vector<MountedVolume>> MountTable::volumesIn(const char* table) {
  const std::unique_ptr<FILE, CloseTable> file(::setmntent(table, "re"));
  if (!file) return std::nullopt;
  std::vector<MountedVolume> volumes;
  mntent entry;
  std::vector<char> line(16 * 1024);
  while (::getmntent_r(file.get(), &entry, line.data(), static_cast<int>(line.size()))) {
    const Path mountPoint(entry.mnt_dir);
    if (isVolume(mountPoint))
      add(volumes, {mountPoint, entry.mnt_type, ::hasmntopt(&entry, MNTOPT_RO) != nullptr});
  }
  // Inside a changed root the table need not name it.
  const auto isStartup = [](const auto& volume) { return volume.mountPoint == startupMountPoint; };
  if (std::none_of(volumes.begin(), volumes.end(), isStartup))
    volumes.insert(volumes.begin(), {startupMountPoint, "", false});
  return volumes;
}

MountedVolume MountTable::holding(const std::vector<MountedVolume>& volumes, const Path& path) {
  MountedVolume best{startupMountPoint, "", false};
  for (const MountedVolume& volume : volumes) {
    if (holds(volume.mountPoint, path) && volume.mountPoint.text().size() >= best.mountPoint.text().size())
      best = volume;
  }
  return best;
}

}  // namespace quarn
