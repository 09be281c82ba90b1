#include "Platform/macos/DataVolume.h"

#include <string_view>
#include <sys/stat.h>

namespace quarn {
namespace {

constexpr std::string_view dataVolume = "/System/Volumes/Data";

bool areSame(const std::string& one, const std::string& other) {
  struct stat a, b;
  return ::stat(one.c_str(), &a) == 0 && ::stat(other.c_str(), &b) == 0 && a.st_dev == b.st_dev &&
         a.st_ino == b.st_ino;
}

}  // namespace

// realpath(3) leaves the long form as it is: it knows links, and not the passages between the two volumes.
Path withoutDataVolume(const Path& path) {
  if (!path.text().starts_with(std::string(dataVolume) + "/")) return path;
  const std::string shorter = path.text().substr(dataVolume.size());
  return areSame(path.text(), shorter) ? Path(shorter) : path;
}

}  // namespace quarn
