#pragma once

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>

#include "tests/support/Scene.h"

/// The drive, which stays mounted elsewhere so that it can come back with all that is on it.
class PocketDrive {
 public:
  PocketDrive() {
    scene::makeFolder(pocket);
    if (::mount(scene::drive.c_str(), pocket.c_str(), nullptr, MS_BIND, nullptr) != 0) std::abort();
  }
  ~PocketDrive() { ::umount2(pocket.c_str(), MNT_DETACH); }
  PocketDrive(const PocketDrive&) = delete;
  PocketDrive& operator=(const PocketDrive&) = delete;

  static void pull(bool leavesItsMountPoint) {
    scene::unplug("X9");
    if (leavesItsMountPoint) scene::makeFolder(scene::drive);
  }
  /// What lies in a folder of its name is out of sight then.
  static void plugAt(const std::string& place) {
    scene::makeFolder(place);
    if (::mount(pocket.c_str(), place.c_str(), nullptr, MS_BIND, nullptr) != 0) std::abort();
  }
  static void plug() {
    std::filesystem::remove_all(scene::drive);
    plugAt(scene::drive);
  }

 private:
  static inline const std::string pocket = "/tmp/pocket";
};

inline dev_t deviceOf(const std::string& item) {
  struct stat found {};
  return ::stat(item.c_str(), &found) == 0 ? found.st_dev : 0;
}

/// Plugs another drive in under the name of X9. The kernel gives the lowest device number that is free, which
/// may be the one of the drive that was pulled out: drives between them take that.
inline void plugAnotherX9() {
  const auto pulledOut = deviceOf("/Volumes/X9");
  scene::unplug("X9");
  for (int between = 0; between < 8; ++between) {
    scene::plug("X9", "16m");
    if (deviceOf("/Volumes/X9") != pulledOut) return;
    scene::unplug("X9");
    scene::plug("Between" + std::to_string(between), "1m");
  }
  FAIL() << "every drive gets the number of the one that was pulled out";
}
