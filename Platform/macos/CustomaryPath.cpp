#include "Platform/macos/CustomaryPath.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

#include "Platform/posix/PathAt.h"

namespace quarn {
namespace {

constexpr std::string_view dataVolume = "/System/Volumes/Data";

bool areSame(const std::string& one, const std::string& other) {
  struct stat a, b;
  return ::stat(one.c_str(), &a) == 0 && ::stat(other.c_str(), &b) == 0 && a.st_dev == b.st_dev &&
         a.st_ino == b.st_ino;
}

// Foundation drops "/private" after one of these prefixes unless the rest lies in one of the folders below.
constexpr std::array<std::string_view, 3> prefixes{"/private/var/automount/", "/var/automount/", "/private/"};

constexpr std::array<std::string_view, 12> ownFolders{
    "/Applications", "/Library", "/System", "/Users",   "/Volumes", "/bin",
    "/cores",        "/dev",     "/opt",    "/private", "/sbin",    "/usr",
};

bool liesIn(std::string_view folder, std::string_view path) {
  return path.starts_with(folder) && (path.size() == folder.size() || path[folder.size()] == '/');
}

bool isOwn(std::string_view path) {
  return std::any_of(ownFolders.begin(), ownFolders.end(), [&](auto folder) { return liesIn(folder, path); });
}

/// Follows links: Foundation keeps "/private" in front of a dangling link.
bool isThere(const Path& path) {
  const PathAt at(path);
  return !at.error() && ::faccessat(at.folder(), at.name(), F_OK, 0) == 0;
}

}  // namespace

// realpath(3) leaves "/System/Volumes/Data" in place: it resolves symbolic links, but the folders of the two
// volumes are joined by firmlinks.
Path withoutDataVolume(const Path& path) {
  if (!path.text().starts_with(std::string(dataVolume) + "/")) return path;
  const std::string shorter = path.text().substr(dataVolume.size());
  return areSame(path.text(), shorter) ? Path(shorter) : path;
}

Path withoutPrivateFolder(const Path& path) {
  for (const std::string_view prefix : prefixes) {
    if (!path.text().starts_with(prefix)) continue;
    const Path shorter(std::string_view(path.text()).substr(prefix.size() - 1));
    return !isOwn(shorter.text()) && isThere(shorter) ? shorter : path;
  }
  return path;
}

}  // namespace quarn
