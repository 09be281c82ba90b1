#include "Platform/macos/ExtendedAttributes.h"

#include <cerrno>
#include <cstring>
#include <string>
#include <string_view>
#include <sys/xattr.h>

namespace quarn {
namespace {

/// In the system's name space, and not of what a person puts into a file: its resource fork, what the Finder
/// keeps, a comment or a tag.
bool isSystems(std::string_view name) {
  return name.starts_with("com.apple.") && name != XATTR_RESOURCEFORK_NAME && name != XATTR_FINDERINFO_NAME &&
         !name.starts_with("com.apple.metadata:");
}

/// Some names, such as com.apple.rootless or com.apple.provenance, are refused to everybody but the system,
/// even on a file that we have just made. ENOATTR: another program has removed it meanwhile.
bool isLeftBehind(int errnoValue, const char* name) {
  const bool isRefused = errnoValue == EPERM || errnoValue == EACCES;
  return errnoValue == ENOTSUP || errnoValue == EOPNOTSUPP || errnoValue == ENOATTR ||
         (isRefused && isSystems(name));
}

/// Asks for the size, then for the bytes, again if they grew in between. False with `errno` set.
template <class Ask>
bool readGrowing(std::string& bytes, Ask ask) {
  for (;;) {
    const ssize_t size = ask(nullptr, 0);
    if (size <= 0) {
      bytes.clear();
      return size == 0;
    }
    bytes.resize(static_cast<std::size_t>(size));
    const ssize_t count = ask(bytes.data(), bytes.size());
    if (count < 0 && errno == ERANGE) continue;
    bytes.resize(count < 0 ? 0 : static_cast<std::size_t>(count));
    return count >= 0;
  }
}

int copyOne(int source, int destination, const char* name) {
  std::string value;
  const bool wasRead = readGrowing(
      value, [&](char* bytes, std::size_t size) { return ::fgetxattr(source, name, bytes, size, 0, 0); });
  if (wasRead && ::fsetxattr(destination, name, value.data(), value.size(), 0, 0) == 0) return 0;
  return isLeftBehind(errno, name) ? 0 : errno;
}

}  // namespace

int copyExtendedAttributes(int source, int destination) {
  std::string names;
  const auto list = [&](char* bytes, std::size_t size) { return ::flistxattr(source, bytes, size, 0); };
  if (!readGrowing(names, list)) return errno == ENOTSUP || errno == EOPNOTSUPP ? 0 : errno;
  for (const char* name = names.data(); name < names.data() + names.size(); name += std::strlen(name) + 1) {
    if (const int error = copyOne(source, destination, name)) return error;
  }
  return 0;
}

}  // namespace quarn
