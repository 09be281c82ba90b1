#include "Ditto.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/sysmacros.h>
#include <system_error>
#include <unistd.h>

#include "Platform/posix/Descriptor.h"

namespace quarn::ditto {

namespace {

class Folder {
 public:
  explicit Folder(int fd) : dir_(fd < 0 ? nullptr : ::fdopendir(fd)) {
    if (dir_ == nullptr && fd >= 0) ::close(fd);
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;
  ~Folder() {
    if (dir_ != nullptr) ::closedir(dir_);
  }
  DIR* get() const { return dir_; }

 private:
  DIR* dir_;
};

bool startsWith(const char* name, const char* start) {
  return std::strncmp(name, start, std::strlen(start)) == 0;
}

bool isSkippedName(const char* name) {
  return startsWith(name, ".nfs") || startsWith(name, ".afpDeleted");
}

bool isDots(const char* name) {
  return std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0;
}

// One of DT_…; what cannot be looked at counts as a file, and opening it will tell what is wrong.
int typeOf(int folder, const dirent& entry) {
  if (entry.d_type != DT_UNKNOWN) return entry.d_type;
  struct stat info {};
  if (::fstatat(folder, entry.d_name, &info, AT_SYMLINK_NOFOLLOW) != 0) return DT_REG;
  return static_cast<int>(IFTODT(info.st_mode));
}

constexpr int readFlags = O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;

}  // namespace

bool Ditto::copy(const std::string& source, const std::string& destination) {
  struct stat info {};
  if (::stat(source.c_str(), &info) != 0) {
    std::fprintf(stderr, "ditto: can't get real path for source '%s'\n", source.c_str());
    return false;
  }
  sourceRoot_ = source;
  destinationRoot_ = destination;
  std::error_code ignored;
  const auto parent = std::filesystem::path(destination).parent_path();
  if (!parent.empty()) std::filesystem::create_directories(parent, ignored);

  const Pair here{AT_FDCWD, AT_FDCWD};
  if (S_ISDIR(info.st_mode)) {
    copyFolder(here, source.c_str(), destination.c_str(), true);
    return good_;
  }
  if (std::filesystem::is_directory(destination, ignored)) {
    destinationRoot_ =
        (std::filesystem::path(destination) / std::filesystem::path(source).filename()).string();
  }
  if (S_ISREG(info.st_mode)) copyFile(here, source.c_str(), destinationRoot_.c_str(), 0);
  return good_;
}

void Ditto::copyFolder(const Pair& parent, const char* sourceName, const char* name, bool top) {
  const int follow = top ? 0 : O_NOFOLLOW;
  const Folder source(::openat(parent.from, sourceName, readFlags | O_DIRECTORY | follow));
  struct stat info {};
  if (source.get() == nullptr || ::fstat(::dirfd(source.get()), &info) != 0) return sourceFailed(errno);
  // A copy into a part of its own source must not copy itself.
  if (!top && Identity{info.st_dev, info.st_ino} == destinationIdentity_) return;

  // Open to its owner until it is filled.
  const bool made = ::mkdirat(parent.to, name, (info.st_mode & 0777) | 0700) == 0;
  if (!made && errno != EEXIST) return destinationFailed(errno);
  const Descriptor target(::openat(parent.to, name, O_RDONLY | O_DIRECTORY | O_CLOEXEC | follow));
  if (target.number() < 0) return destinationFailed(errno == ELOOP ? ENOTDIR : errno);
  if (top) {
    struct stat own {};
    ::fstat(target.number(), &own);
    destinationTop_ = target.number();
    destinationIdentity_ = {own.st_dev, own.st_ino};
    if (destinationIdentity_ == Identity{info.st_dev, info.st_ino}) return;
  }
  copyEntries(source.get(), {::dirfd(source.get()), target.number()});
  // A folder that was there before keeps its own mode and attributes, as with the real tool.
  if (!made) return;
  if (const int error = files_.extendedAttributes(::dirfd(source.get()), target.number()))
    destinationFailed(error);
  if (const int error = files_.properties(target.number(), info)) destinationFailed(error);
}

void Ditto::copyEntries(DIR* folder, const Pair& pair) {
  errno = 0;
  while (const dirent* entry = ::readdir(folder)) {
    if (!isDots(entry->d_name) && !isSkippedName(entry->d_name)) copyEntry(pair, *entry);
    errno = 0;
  }
  if (errno != 0) sourceFailed(errno);
}

void Ditto::copyEntry(const Pair& pair, const dirent& entry) {
  const std::size_t length = relative_.size();
  relative_.append("/").append(entry.d_name);
  switch (typeOf(pair.from, entry)) {
    case DT_DIR:
      copyFolder(pair, entry.d_name, entry.d_name, false);
      break;
    case DT_LNK:
      copyLink(pair, entry.d_name);
      break;
    case DT_BLK:
    case DT_CHR:
      copyDevice(pair, entry.d_name);
      break;
    case DT_FIFO:
    case DT_SOCK:
      break;
    default:
      copyFile(pair, entry.d_name, entry.d_name, O_NOFOLLOW);
  }
  relative_.resize(length);
}

// Makes room at `name` for what is not a folder: afterwards nothing stands there. 0 or an error number.
int Ditto::makeRoom(const Pair& pair, const char* name, const struct stat* source) {
  struct stat there {};
  if (::fstatat(pair.to, name, &there, AT_SYMLINK_NOFOLLOW) != 0) return errno == ENOENT ? 0 : errno;
  if (S_ISDIR(there.st_mode)) return EISDIR;
  if (source != nullptr && there.st_dev == source->st_dev && there.st_ino == source->st_ino) return EEXIST;
  return ::unlinkat(pair.to, name, 0) == 0 ? 0 : errno;
}

// A descriptor, or the error number, negated. -EEXIST: source and destination are the same file.
int Ditto::createFile(const Pair& pair, const char* name, const struct stat& source) {
  const mode_t mode = (source.st_mode & 0777) | 0600;
  const int flags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
  const int made = ::openat(pair.to, name, flags, mode);
  if (made >= 0 || errno != EEXIST) return made >= 0 ? made : -errno;
  if (const int error = makeRoom(pair, name, &source)) return -error;
  const int second = ::openat(pair.to, name, flags, mode);
  return second >= 0 ? second : -errno;
}

void Ditto::copyFile(const Pair& pair, const char* sourceName, const char* name, int followLinks) {
  const Descriptor source(::openat(pair.from, sourceName, readFlags | followLinks));
  struct stat info {};
  if (source.number() < 0 || ::fstat(source.number(), &info) != 0) return sourceFailed(errno);
  if (linkedToEarlierCopy(pair, name, info)) return;
  const Descriptor target(createFile(pair, name, info));
  if (target.number() == -EEXIST) return;
  if (target.number() < 0) return destinationFailed(-target.number());
  remember(info);
  fillFile(source.number(), target.number(), info);
}

void Ditto::fillFile(int from, int to, const struct stat& info) {
  if (const int error = files_.content(from, to, info)) destinationFailed(error);
  if (const int error = files_.extendedAttributes(from, to)) destinationFailed(error);
  if (const int error = files_.properties(to, info)) destinationFailed(error);
}

void Ditto::copyLink(const Pair& pair, const char* name) {
  struct stat info {};
  if (::fstatat(pair.from, name, &info, AT_SYMLINK_NOFOLLOW) != 0) return sourceFailed(errno);
  if (linkedToEarlierCopy(pair, name, info)) return;
  std::string text(static_cast<std::size_t>(info.st_size) + 1, '\0');
  ssize_t length = ::readlinkat(pair.from, name, text.data(), text.size());
  if (length == static_cast<ssize_t>(text.size())) {
    text.resize(64 * 1024);
    length = ::readlinkat(pair.from, name, text.data(), text.size());
  }
  if (length < 0) return sourceFailed(errno);
  text.resize(static_cast<std::size_t>(length));
  int made = ::symlinkat(text.c_str(), pair.to, name);
  if (made != 0 && errno == EEXIST) {
    const int error = makeRoom(pair, name, &info);
    if (error == EEXIST) return;
    if (error != 0) return destinationFailed(error);
    made = ::symlinkat(text.c_str(), pair.to, name);
  }
  if (made != 0) return destinationFailed(errno);
  remember(info);
  (void)::fchownat(pair.to, name, info.st_uid, info.st_gid, AT_SYMLINK_NOFOLLOW);
  const timespec times[2] = {info.st_atim, info.st_mtim};
  if (::utimensat(pair.to, name, times, AT_SYMLINK_NOFOLLOW) != 0) destinationFailed(errno);
}

void Ditto::copyDevice(const Pair& pair, const char* name) {
  struct stat info {};
  if (::fstatat(pair.from, name, &info, AT_SYMLINK_NOFOLLOW) != 0) return sourceFailed(errno);
  if (const int error = makeRoom(pair, name, &info)) {
    if (error != EEXIST) destinationFailed(error);
    return;
  }
  if (::mknodat(pair.to, name, info.st_mode, info.st_rdev) != 0) return destinationFailed(errno);
  (void)::fchownat(pair.to, name, info.st_uid, info.st_gid, AT_SYMLINK_NOFOLLOW);
  const timespec times[2] = {info.st_atim, info.st_mtim};
  if (::utimensat(pair.to, name, times, AT_SYMLINK_NOFOLLOW) != 0) destinationFailed(errno);
}

bool Ditto::linkedToEarlierCopy(const Pair& pair, const char* name, const struct stat& info) {
  if (info.st_nlink < 2 || destinationTop_ < 0) return false;
  const auto earlier = linked_.find({info.st_dev, info.st_ino});
  if (earlier == linked_.end()) return false;
  const char* first = earlier->second.c_str();
  if (::linkat(destinationTop_, first, pair.to, name, 0) == 0) return true;
  if (errno != EEXIST || makeRoom(pair, name, &info) != 0) return false;
  // Where hard links can't be made, a second copy has the same content.
  return ::linkat(destinationTop_, first, pair.to, name, 0) == 0;
}

void Ditto::remember(const struct stat& info) {
  if (info.st_nlink > 1 && destinationTop_ >= 0)
    linked_.emplace(Identity{info.st_dev, info.st_ino}, relative_.substr(1));
}

void Ditto::sourceFailed(int error) {
  good_ = false;
  std::fprintf(stderr, "ditto: %s%s: %s\n", sourceRoot_.c_str(), relative_.c_str(), std::strerror(error));
}

void Ditto::destinationFailed(int error) {
  good_ = false;
  std::fprintf(stderr, "ditto: %s%s: %s\n", destinationRoot_.c_str(), relative_.c_str(),
               std::strerror(error));
}

}  // namespace quarn::ditto
