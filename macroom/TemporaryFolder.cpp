#include "TemporaryFolder.h"

#include <fcntl.h>
#include <filesystem>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quarn::room {

namespace fs = std::filesystem;

namespace {

std::string prefix() {
  return "quarn-room." + std::to_string(::geteuid()) + ".";
}

// Folders that the room's user has closed to themselves are opened first, or they would stay.
void removeTree(const std::string& path) {
  std::error_code error;
  ::chmod(path.c_str(), 0700);
  for (fs::recursive_directory_iterator item(path, error), end; item != end; item.increment(error))
    if (item->is_directory(error) && !item->is_symlink(error)) ::chmod(item->path().c_str(), 0700);
  fs::remove_all(path, error);
}

Descriptor openAndLock(const std::string& path) {
  Descriptor folder(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  if (!folder.isOpen() || ::flock(folder.number(), LOCK_EX | LOCK_NB) != 0) return Descriptor();
  return folder;
}

void removeAbandoned(const std::string& parent) {
  std::error_code error;
  for (const auto& entry : fs::directory_iterator(parent, error)) {
    if (entry.path().filename().string().rfind(prefix(), 0) != 0) continue;
    const Descriptor lock = openAndLock(entry.path().string());
    if (lock.isOpen()) removeTree(entry.path().string());
  }
}

}  // namespace

std::optional<TemporaryFolder> TemporaryFolder::make(const std::string& parent) {
  removeAbandoned(parent);
  // Between making and locking, another room may take the folder for an abandoned one.
  for (int attempt = 0; attempt < 10; ++attempt) {
    std::string path = parent + "/" + prefix() + "XXXXXX";
    if (::mkdtemp(path.data()) == nullptr) return std::nullopt;
    Descriptor lock = openAndLock(path);
    struct stat made {};
    if (lock.isOpen() && ::fstat(lock.number(), &made) == 0 && made.st_nlink > 0 &&
        ::access(path.c_str(), W_OK) == 0)
      return TemporaryFolder(std::move(path), std::move(lock));
    ::rmdir(path.c_str());
  }
  return std::nullopt;
}

TemporaryFolder::~TemporaryFolder() {
  if (!path_.empty()) removeTree(path_);
}

}  // namespace quarn::room
