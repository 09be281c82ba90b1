#pragma once

#include <fcntl.h>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

/// Makes a chain of folders in `root`, one in the other, all called "d" and each with a file "f", far
/// deeper than a path can tell.
inline void makeDeepTree(const std::string& root, int depth) {
  int folder = ::open(root.c_str(), O_RDONLY | O_DIRECTORY);
  for (int i = 0; i < depth; ++i) {
    if (::mkdirat(folder, "d", 0700) != 0) throw std::runtime_error("no folder");
    const int next = ::openat(folder, "d", O_RDONLY | O_DIRECTORY);
    ::close(folder);
    folder = next;
    ::close(::openat(folder, "f", O_CREAT | O_WRONLY, 0600));
  }
  ::close(folder);
}

/// Makes folders one in the other in `root`, so deep that realpath(3) can't tell the path of the innermost
/// one. Returns a shorter path to that, through a link that is made at `link`.
inline std::string makeFarFolder(const std::string& root, const std::string& link) {
  std::string half;
  for (int i = 0; i < 11; ++i) half += "/" + std::string(200, 'd');
  std::filesystem::create_directories(root + half);
  std::filesystem::create_symlink(root + half, link);
  std::filesystem::create_directories(link + half);
  return link + half;
}
