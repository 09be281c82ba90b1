#include "Mounts.h"

#include <fcntl.h>
#include <linux/mount.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

// <sys/mount.h> of older C libraries and <linux/mount.h> do not go together in one file.
extern "C" int mount(const char* source, const char* target, const char* type, unsigned long flags,
                     const void* data) noexcept;

#include "Sys.h"

namespace quarn::room::Mounts {

namespace {

bool isSamePlace(const struct stat& one, const struct stat& other) {
  return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

// Only a mount point can be made private, and the root of a chroot may be an ordinary folder. A process whose
// working folder lies outside its root can go up from there to the real root, see chroot(2).
void climbOutOfChroot(const Descriptor& root) {
  check(::chroot("/proc"), "chroot");
  check(::fchdir(root.number()), "/");
  struct stat here {
  }, above{};
  do {
    check(::stat(".", &here), ".");
    check(::chdir(".."), "..");
    check(::stat(".", &above), ".");
  } while (!isSamePlace(here, above));
}

}  // namespace

void mount(const std::string& type, const std::string& at, unsigned long flags, const std::string& data) {
  check(::mount(type.c_str(), at.c_str(), type.c_str(), flags, data.c_str()), "mounting " + at);
}

void memory(const std::string& at, const std::string& data) {
  mount("tmpfs", at, MS_NOSUID | MS_NODEV, data);
}

void bind(const std::string& from, const std::string& to) {
  check(::mount(from.c_str(), to.c_str(), nullptr, MS_BIND | MS_REC, nullptr), "binding " + from);
}

void makeReadOnly(const std::string& path) {
  mount_attr attributes{};
  attributes.attr_set = MOUNT_ATTR_RDONLY;
  check(static_cast<int>(::syscall(SYS_mount_setattr, AT_FDCWD, path.c_str(), AT_RECURSIVE, &attributes,
                                   sizeof attributes)),
        "making " + path + " read-only");
}

void cutOff() {
  const Descriptor root(check(::open("/", O_PATH | O_DIRECTORY | O_CLOEXEC), "/"));
  climbOutOfChroot(root);
  check(::mount(nullptr, ".", nullptr, MS_REC | MS_PRIVATE, nullptr), "own mounts");
  check(::fchdir(root.number()), "/");
  check(::chroot("."), "chroot");
}

}  // namespace quarn::room::Mounts
