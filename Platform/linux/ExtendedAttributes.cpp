#include "Platform/posix/ExtendedAttributes.h"

#include <cerrno>
#include <cstring>
#include <sys/xattr.h>

namespace quarn {
namespace {

/// The person's own; the other name spaces belong to the system (xattr(7)).
bool isPersons(const char* name) {
  return std::strncmp(name, "user.", 5) == 0;
}

}  // namespace

ssize_t listAttributes(int item, char* names, std::size_t size) {
  return ::flistxattr(item, names, size);
}

ssize_t getAttribute(int item, const char* name, char* value, std::size_t size) {
  return ::fgetxattr(item, name, value, size);
}

int setAttribute(int item, const char* name, const char* value, std::size_t size) {
  return ::fsetxattr(item, name, value, size, 0);
}

bool mayLeaveBehind(int errnoValue, const char* name) {
  const bool isRefused = errnoValue == EPERM || errnoValue == EACCES;
  return errnoValue == ENOTSUP || errnoValue == ENODATA || (isRefused && !isPersons(name));
}

}  // namespace quarn
