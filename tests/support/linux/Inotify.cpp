#include "tests/support/linux/Inotify.h"

#include <cstdio>
#include <fstream>

int inotifyQueueLimit() {
  std::ifstream stream("/proc/sys/fs/inotify/max_queued_events");
  int limit = 0;
  return stream >> limit ? limit : 0;
}

bool overflowInotify(const std::string& folder) {
  const std::string one = folder + "/burst", other = folder + "/burst2";
  std::ofstream(one) << "content";
  // Four events each, and never two equal ones in a row, which would be merged.
  for (int i = 0; i < inotifyQueueLimit(); i += 4) {
    if (::rename(one.c_str(), other.c_str()) != 0 || ::rename(other.c_str(), one.c_str()) != 0) return false;
  }
  return true;
}

std::size_t inotifyWatches(int queue) {
  // One line for each; proc(5), on fdinfo.
  std::ifstream stream("/proc/self/fdinfo/" + std::to_string(queue));
  std::size_t count = 0;
  for (std::string line; std::getline(stream, line);) count += line.starts_with("inotify ");
  return count;
}
