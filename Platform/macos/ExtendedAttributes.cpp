#include "Platform/posix/ExtendedAttributes.h"

#include <cerrno>
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

}  // namespace

ssize_t listAttributes(int item, char* names, std::size_t size) {
  return ::flistxattr(item, names, size, 0);
}

ssize_t getAttribute(int item, const char* name, char* value, std::size_t size) {
  return ::fgetxattr(item, name, value, size, 0, 0);
}

int setAttribute(int item, const char* name, const char* value, std::size_t size) {
  return ::fsetxattr(item, name, value, size, 0, 0);
}

// Some names, such as com.apple.rootless or com.apple.provenance, are refused to everybody but the system,
// even on a file that we have just made. ENOATTR: another program has removed it meanwhile.
bool mayLeaveBehind(int errnoValue, const char* name) {
  const bool isRefused = errnoValue == EPERM || errnoValue == EACCES;
  return errnoValue == ENOTSUP || errnoValue == EOPNOTSUPP || errnoValue == ENOATTR ||
         (isRefused && isSystems(name));
}

}  // namespace quarn
