// Stands in for the Mac's copying tool of this name: ditto [--rsrc] SRC DST.

#include <cstdio>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <vector>

#include "Ditto.h"

namespace {

// Every level of a deep tree holds two descriptors.
void allowAllDescriptors() {
  rlimit limit{};
  if (::getrlimit(RLIMIT_NOFILE, &limit) != 0) return;
  limit.rlim_cur = limit.rlim_max;
  ::setrlimit(RLIMIT_NOFILE, &limit);
}

std::string withoutTrailingSlashes(std::string path) {
  while (path.size() > 1 && path.back() == '/') path.pop_back();
  return path;
}

}  // namespace

int main(int count, char** words) {
  std::vector<std::string> paths(words + 1, words + count);
  if (!paths.empty() && paths.front() == "--rsrc") paths.erase(paths.begin());
  if (paths.size() != 2) {
    std::fputs("usage: ditto [--rsrc] SRC DST\n", stderr);
    return 1;
  }
  allowAllDescriptors();
  ::umask(0);
  quarn::ditto::Ditto ditto;
  return ditto.copy(withoutTrailingSlashes(paths[0]), withoutTrailingSlashes(paths[1])) ? 0 : 1;
}
