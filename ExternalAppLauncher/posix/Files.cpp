#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "ExternalAppLauncher/System.h"

namespace quarn::System {
namespace {

bool looksAt(const std::string& path, struct stat& found) {
  return ::stat(path.c_str(), &found) == 0;
}

/// Reads until `most` bytes and one more are there, or the end has come. Returns whether nothing failed.
bool readFrom(int descriptor, std::size_t most, std::string& content) {
  content.resize(most + 1);
  std::size_t length = 0;
  while (length < content.size()) {
    const ssize_t count = ::read(descriptor, content.data() + length, content.size() - length);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return false;
    if (count == 0) break;
    length += static_cast<std::size_t>(count);
  }
  content.resize(length);
  return true;
}

}  // namespace

int whyNotThere(const std::string& path) {
  struct stat found {};
  return looksAt(path, found) ? 0 : errno;
}

bool isRegularFile(const std::string& path) {
  struct stat found {};
  return looksAt(path, found) && S_ISREG(found.st_mode);
}

bool isDrive(const std::string& folder) {
  struct stat itself {
  }, above{};
  if (::lstat(folder.c_str(), &itself) != 0 || !looksAt(folder + "/..", above)) return false;
  return S_ISLNK(itself.st_mode) || itself.st_dev != above.st_dev;
}

std::optional<std::string> read(const std::string& file, std::size_t most) {
  const int descriptor = ::open(file.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  if (descriptor < 0) return std::nullopt;
  struct stat found {};
  std::string content;
  bool isRead = ::fstat(descriptor, &found) == 0;
  if (isRead && !S_ISREG(found.st_mode)) {
    errno = EINVAL;
    isRead = false;
  }
  isRead = isRead && readFrom(descriptor, most, content);
  const int reasonOfFailure = errno;
  ::close(descriptor);
  errno = reasonOfFailure;
  if (!isRead) return std::nullopt;
  return content;
}

std::vector<std::string> visibleNames(const std::string& folder) {
  std::vector<std::string> names;
  DIR* listing = ::opendir(folder.c_str());
  if (!listing) return names;
  while (const dirent* entry = ::readdir(listing)) {
    if (entry->d_name[0] != '.') names.emplace_back(entry->d_name);
  }
  ::closedir(listing);
  return names;
}

std::string reason(int errorNumber) {
  return std::strerror(errorNumber);
}

}  // namespace quarn::System
