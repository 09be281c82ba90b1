#include "Platform/macos/PrivateFolder.h"

#include <algorithm>
#include <array>
#include <unistd.h>

#include "Platform/posix/PathAt.h"

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

bool isThere(const Path& path) {
  const PathAt at(path);
  return !at.error() && ::faccessat(at.folder(), at.name(), F_OK, 0) == 0;
}

}  // namespace

Path withoutPrivateFolder(const Path& path) {
  for (const std::string_view prefix : prefixes) {
    if (!path.text().starts_with(prefix)) continue;
    const Path shorter(std::string_view(path.text()).substr(prefix.size() - 1));
    return !isOwn(shorter.text()) && isThere(shorter) ? shorter : path;
  }
  return path;
}

}  // namespace quarn
