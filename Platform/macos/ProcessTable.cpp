#include "Platform/macos/ProcessTable.h"

#include <algorithm>
#include <libproc.h>
#include <sys/proc_info.h>

namespace quarn {

std::vector<int> processes() {
  // Larger than needed, because processes may start meanwhile. A result that fills the table may be
  // incomplete.
  for (std::vector<int> table(1024);; table.resize(table.size() * 2)) {
    const int count = ::proc_listallpids(table.data(), static_cast<int>(table.size() * sizeof(int)));
    if (count >= static_cast<int>(table.size())) continue;
    table.resize(static_cast<std::size_t>(std::max(count, 0)));
    return table;
  }
}

std::string executableOf(int process) {
  std::string path(PROC_PIDPATHINFO_MAXSIZE, '\0');
  const int length = ::proc_pidpath(process, path.data(), static_cast<std::uint32_t>(path.size()));
  // proc_pidpath returns 0 on failure.
  path.resize(static_cast<std::size_t>(std::max(length, 0)));
  return path;
}

}  // namespace quarn
