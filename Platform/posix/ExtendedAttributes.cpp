#include <cerrno>
#include <cstring>
#include <string>

#include "Platform/posix/ItemCopier.h"

namespace quarn {
namespace {

/// Asks for the size, then for the bytes, and starts again if the value has grown in between (ERANGE,
/// getxattr(2)). Returns false with `errno` set on failure.
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
  const auto get = [&](char* bytes, std::size_t size) { return getAttribute(source, name, bytes, size); };
  if (readGrowing(value, get) && setAttribute(destination, name, value.data(), value.size()) == 0) return 0;
  return mayLeaveBehind(errno, name) ? 0 : errno;
}

}  // namespace

int copyExtendedAttributes(int source, int destination) {
  std::string names;
  const auto list = [&](char* bytes, std::size_t size) { return listAttributes(source, bytes, size); };
  // A volume without extended attributes has none to copy.
  if (!readGrowing(names, list)) return errno == ENOTSUP || errno == EOPNOTSUPP ? 0 : errno;
  // The names are separated by NULs (listxattr(2)).
  for (const char* name = names.data(); name < names.data() + names.size(); name += std::strlen(name) + 1) {
    if (const int error = copyOne(source, destination, name)) return error;
  }
  return 0;
}

}  // namespace quarn
