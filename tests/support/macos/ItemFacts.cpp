#include "tests/support/ItemFacts.h"

#include <stdexcept>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace {

constexpr const char* name = "user.note";

}  // namespace

timespec modificationTime(const std::string& path) {
  struct stat found {};
  if (::lstat(path.c_str(), &found) != 0) throw std::runtime_error("nothing at " + path);
  return found.st_mtimespec;
}

bool setAttribute(const std::string& path, const std::string& value) {
  return ::setxattr(path.c_str(), name, value.data(), value.size(), 0, 0) == 0;
}

std::optional<std::string> attribute(const std::string& path) {
  char value[256];
  const ssize_t size = ::getxattr(path.c_str(), name, value, sizeof value, 0, 0);
  if (size < 0) return std::nullopt;
  return std::string(value, static_cast<std::size_t>(size));
}

bool setLocked(const std::string& path, bool on) {
  return ::chflags(path.c_str(), on ? UF_IMMUTABLE : 0u) == 0;
}
