#include "Platform/posix/FolderStack.h"

#include <cerrno>
#include <fcntl.h>

namespace quarn {
namespace {

// A copy holds two chains, and a shell on a Mac allows 256 descriptors by default (getrlimit(2)), some of
// which are in use already.
constexpr std::size_t keptOpen = 16;
constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

}  // namespace

FolderStack::FolderStack(Descriptor root) {
  levels_.emplace_back();
  levels_.back().descriptor = std::move(root);
}

const char* FolderStack::name() const {
  const std::size_t slash = path().rfind('/');
  return path_.c_str() + (slash == std::string_view::npos ? 0 : slash + 1);
}

int FolderStack::enter(const char* name) {
  Descriptor child(::openat(folder(), name, folderFlags));
  if (!child.isOpen()) return errno;
  path_.resize(levels_.back().pathLength);
  if (!path_.empty()) path_ += '/';
  path_ += name;
  levels_.emplace_back();
  levels_.back().descriptor = std::move(child);
  levels_.back().pathLength = path_.size();
  giveUpOutermost();
  return 0;
}

int FolderStack::leave() {
  const Descriptor child = std::move(levels_.back().descriptor);
  levels_.pop_back();
  path_.resize(levels_.back().pathLength);
  return levels_.back().descriptor.isOpen() ? 0 : reopen(child);
}

// Closes the outermost open folder below the root. The root stays open, because a lost folder is found again
// from there.
void FolderStack::giveUpOutermost() {
  if (depth() <= keptOpen) return;
  // The device and inode number identify the folder when it is opened again.
  Level& level = levels_[levels_.size() - 1 - keptOpen];
  struct stat status;
  if (!level.descriptor.isOpen() || ::fstat(level.descriptor.number(), &status) != 0) return;
  level.device = status.st_dev;
  level.inode = status.st_ino;
  level.descriptor.close();
}

int FolderStack::reopen(const Descriptor& child) {
  Level& level = levels_.back();
  const auto isTheSame = [&](const Descriptor& found) {
    struct stat status;
    return found.isOpen() && ::fstat(found.number(), &status) == 0 && status.st_dev == level.device &&
           status.st_ino == level.inode;
  };
  // Cheapest first: the child's own ".." usually still is the parent.
  Descriptor found(child.isOpen() ? ::openat(child.number(), "..", folderFlags) : -1);
  // That fails if the child was moved elsewhere or may not be searched. The path from the root may lead to
  // another folder by now, so its result is checked too.
  if (!isTheSame(found)) found = openFromRoot();
  if (!isTheSame(found)) return ENOENT;
  level.descriptor = std::move(found);
  return 0;
}

Descriptor FolderStack::openFromRoot() const {
  Descriptor current(::fcntl(levels_.front().descriptor.number(), F_DUPFD_CLOEXEC, 0));
  for (std::size_t begin = 0; begin < path_.size() && current.isOpen();) {
    std::size_t end = path_.find('/', begin);
    if (end == std::string::npos) end = path_.size();
    const std::string component = path_.substr(begin, end - begin);
    current = Descriptor(::openat(current.number(), component.c_str(), folderFlags));
    begin = end + 1;
  }
  return current;
}

}  // namespace quarn
