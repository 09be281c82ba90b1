#include "tests/support/linux/OwnMounts.h"

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>

#include "tests/support/Child.h"

namespace child {
namespace {

bool takeOwnMounts() {
  return ::unshare(CLONE_NEWNS) == 0 && ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

}  // namespace

std::string failuresWithOwnMounts(const std::function<void()>& body) {
  return failures([&] {
    ASSERT_TRUE(takeOwnMounts());
    body();
  });
}

bool canMount() {
  return succeeds(takeOwnMounts);
}

bool mountMemory(const std::string& folder, const std::string& options) {
  return ::mount("memory", folder.c_str(), "tmpfs", 0, options.c_str()) == 0;
}

bool unmount(const std::string& folder) {
  return ::umount(folder.c_str()) == 0;
}

bool makeReadOnly(const std::string& folder) {
  return ::mount("memory", folder.c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr) == 0;
}

}  // namespace child
