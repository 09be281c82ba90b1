#include "tests/support/ItemFacts.h"

#include <fcntl.h>
#include <linux/fs.h>
#include <stdexcept>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace {

constexpr const char* name = "user.note";

}  // namespace

timespec modificationTime(const std::string& path) {
  struct stat found {};
  if (::lstat(path.c_str(), &found) != 0) throw std::runtime_error("nothing at " + path);
  return found.st_mtim;
}

bool setAttribute(const std::string& path, const std::string& value) {
  return ::setxattr(path.c_str(), name, value.data(), value.size(), 0) == 0;
}

std::optional<std::string> attribute(const std::string& path) {
  char value[256];
  const ssize_t size = ::getxattr(path.c_str(), name, value, sizeof value);
  if (size < 0) return std::nullopt;
  return std::string(value, static_cast<std::size_t>(size));
}

bool setLocked(const std::string& path, bool on) {
  const int file = ::open(path.c_str(), O_RDONLY);
  int flags = 0;
  bool done = ::ioctl(file, FS_IOC_GETFLAGS, &flags) == 0;
  flags = on ? flags | FS_IMMUTABLE_FL : flags & ~FS_IMMUTABLE_FL;
  done = done && ::ioctl(file, FS_IOC_SETFLAGS, &flags) == 0;
  ::close(file);
  return done;
}
