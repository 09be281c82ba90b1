#include "bench/LookUpAndRead.h"

#include <array>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <sys/stat.h>

namespace bench {
namespace {

bool readsWhole(const std::string& path) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "r"), std::fclose);
  std::array<char, 4096> buffer;
  if (!file) return false;
  while (std::fread(buffer.data(), 1, buffer.size(), file.get()) == buffer.size()) {
  }
  return std::feof(file.get()) != 0;
}

}  // namespace

int lookUpAndRead(const std::vector<std::string>& folders) {
  int count = 0;
  for (const std::string& folder : folders) {
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
      struct stat status;
      const std::string path = entry.path();
      if (!path.ends_with(".app") || ::lstat(path.c_str(), &status) != 0) continue;
      if (readsWhole(path + "/Contents/Info.plist")) ++count;
    }
  }
  return count;
}

}  // namespace bench
