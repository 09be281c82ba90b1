// Stands in for the Mac's tool of this name: xattr -cr PATH…, which clears the extended attributes of each
// item and of all below it. Like that tool, it clears those of what a link leads to, and enters no link to a
// folder.

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>
#include <sys/xattr.h>
#include <vector>

namespace fs = std::filesystem;

namespace {

bool refused(const std::string& path) {
  if (errno == ENOENT)
    std::fprintf(stderr, "xattr: No such file: %s\n", path.c_str());
  else
    std::fprintf(stderr, "xattr: [Errno %d] %s: '%s'\n", errno, std::strerror(errno), path.c_str());
  return false;
}

// What only the system may set stays, as on a Mac.
bool isForAnyone(const std::string& name) {
  return name.compare(0, 5, "user.") == 0;
}

bool clear(const std::string& path) {
  const ssize_t size = ::listxattr(path.c_str(), nullptr, 0);
  if (size < 0) return errno == ENOTSUP || refused(path);
  std::vector<char> names(static_cast<std::size_t>(size));
  const ssize_t got = ::listxattr(path.c_str(), names.data(), names.size());
  if (got < 0) return refused(path);
  bool good = true;
  for (ssize_t at = 0; at < got;) {
    const std::string name(&names[static_cast<std::size_t>(at)]);
    at += static_cast<ssize_t>(name.size()) + 1;
    if (isForAnyone(name) && ::removexattr(path.c_str(), name.c_str()) != 0) good = refused(path);
  }
  return good;
}

bool clearAll(const std::string& top) {
  bool good = clear(top);
  if (!fs::is_directory(top)) return good;
  std::error_code error;
  for (fs::recursive_directory_iterator item(top, error), end; !error && item != end; item.increment(error))
    good = clear(item->path().string()) && good;
  return good && !error;
}

}  // namespace

int main(int count, char** words) {
  if (count < 3 || std::strcmp(words[1], "-cr") != 0) {
    std::fputs("usage: xattr -cr file [file ...]\n", stderr);
    return 64;
  }
  bool good = true;
  for (int i = 2; i < count; ++i) good = clearAll(words[i]) && good;
  return good ? 0 : 1;
}
