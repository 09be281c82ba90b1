#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <pwd.h>
#include <unistd.h>
#include <vector>

#include "Platform/linux/LinuxPlatform.h"
#include "Platform/posix/PathAt.h"

namespace quarn {
namespace {

/// Looks up an entry of the password file. `find` is getpwuid_r or getpwnam_r with the key already bound.
template <class Find>
std::optional<Path> homeOf(Find find) {
  for (std::vector<char> buffer(4096);; buffer.resize(buffer.size() * 2)) {
    passwd entry;
    passwd* found = nullptr;
    // ERANGE: the buffer is too small (getpwnam_r(3)).
    if (find(&entry, buffer.data(), buffer.size(), &found) == ERANGE) continue;
    if (!found) return std::nullopt;
    return Path(found->pw_dir);
  }
}

}  // namespace

Path LinuxPlaces::home() const {
  const char* variable = std::getenv("HOME");
  if (variable && variable[0] == '/') return Path(variable);
  const auto listed = homeOf([](passwd* entry, char* buffer, std::size_t size, passwd** found) {
    return ::getpwuid_r(::getuid(), entry, buffer, size, found);
  });
  return listed.value_or(Path("/"));
}

std::optional<Path> LinuxPlaces::home(const std::string& user) const {
  return homeOf([&](passwd* entry, char* buffer, std::size_t size, passwd** found) {
    return ::getpwnam_r(user.c_str(), entry, buffer, size, found);
  });
}

Path LinuxPlaces::executable() const {
  return Path(linkText(AT_FDCWD, "/proc/self/exe").value_or(""));
}

std::string LinuxPlaces::invokedAs() const {
  // The arguments, each of which ends with a NUL (proc(5)).
  std::string arguments;
  readWhole(PathAt(Path("/proc/self/cmdline")), arguments);
  return arguments.substr(0, arguments.find('\0'));
}

Path LinuxPlaces::temporaryFolder() const {
  const char* variable = std::getenv("TMPDIR");
  return Path(variable && variable[0] == '/' ? variable : "/tmp");
}

}  // namespace quarn
