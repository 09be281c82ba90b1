#include <sys/mount.h>
#include <unistd.h>

#include "tests/support/Scene.h"

namespace scene {

void plug(const std::string& name, const std::string& size, bool readOnly) {
  const std::string point = "/Volumes/" + name;
  makeFolder(point);
  const std::string options = "size=" + size + ",mode=0755";
  if (::mount("tmpfs", point.c_str(), "tmpfs", readOnly ? MS_RDONLY : 0, options.c_str()) != 0) {
    fail("can't mount " + point);
  }
}

void unplug(const std::string& name) {
  const std::string point = "/Volumes/" + name;
  if (::umount2(point.c_str(), MNT_DETACH) != 0) fail("can't unmount " + point);
  ::rmdir(point.c_str());
}

}  // namespace scene
