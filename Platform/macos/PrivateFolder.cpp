#include "Platform/macos/PrivateFolder.h"

#include <algorithm>
#include <array>
#include <unistd.h>

namespace quarn {
namespace {

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

}  // namespace

Path withoutPrivateFolder(const Path& path) {
  for (const std::string_view prefix : prefixes) {
    if (!path.text().starts_with(prefix)) continue;
    const std::string shorter = path.text().substr(prefix.size() - 1);
    return !isOwn(shorter) && ::access(shorter.c_str(), F_OK) == 0 ? Path(shorter) : path;
  }
  return path;
}

}  // namespace quarn
