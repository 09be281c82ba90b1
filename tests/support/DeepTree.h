#pragma once

#include <fcntl.h>
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
