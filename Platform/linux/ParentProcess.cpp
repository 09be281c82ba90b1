#include "Platform/posix/ParentProcess.h"

#include <cstdio>
#include <string>

#include "Platform/posix/FileReader.h"

namespace quarn {

int parentOf(int process) {
  std::string line;
  if (readWhole(PathAt(Path("/proc/" + std::to_string(process) + "/stat")), line) != 0) return 0;
  // The name stands in parentheses and may hold any, so what follows the last one counts.
  const std::size_t close = line.rfind(')');
  int parent = 0;
  if (close == std::string::npos || std::sscanf(line.c_str() + close, ") %*c %d", &parent) != 1) return 0;
  return parent;
}

}  // namespace quarn
