#pragma once

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <mutex>
#include <set>
#include <string>
#include <thread>

#include "Platform/HostPlatform.h"

/// What the host tells of some roots from its making until it is stopped.
class HeardEvents {
 public:
  explicit HeardEvents(const std::vector<quarn::Path>& roots)
      : stream_(quarn::hostPlatform().events.watch(
            roots, [this](const std::vector<quarn::Path>& changed) { hear(changed); })) {}

  bool isWatching() const { return stream_ != nullptr; }
  const std::set<std::string>& stop() {
    stream_->stop();
    return paths_;
  }
  /// While it goes on.
  bool hasHeard(const std::string& path) {
    const std::lock_guard guard(lock_);
    return paths_.contains(path);
  }
  /// Makes a file, and waits until it is heard of, and with it all that happened before. False if it never
  /// is.
  bool catchUp(const std::string& file) {
    std::ofstream(file) << "content";
    for (int i = 0; i < 3000 && !hasHeard(file); ++i)
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    return hasHeard(file);
  }

 private:
  void hear(const std::vector<quarn::Path>& changed) {
    const std::lock_guard guard(lock_);
    for (const quarn::Path& path : changed) paths_.insert(path.text());
  }

  std::mutex lock_;
  std::set<std::string> paths_;
  std::unique_ptr<quarn::FileEventStream> stream_;  // last: the others outlive it
};

/// All paths below a folder that aren't among those heard of; links aren't followed.
inline std::set<std::string> missingIn(const std::set<std::string>& heard, const std::string& folder) {
  std::set<std::string> missing;
  for (const auto& item : std::filesystem::recursive_directory_iterator(folder)) {
    if (!heard.contains(item.path().string())) missing.insert(item.path().string());
  }
  return missing;
}

/// The paths heard of that lie below a folder.
inline std::set<std::string> below(const std::string& folder, const std::set<std::string>& heard) {
  std::set<std::string> found;
  for (const std::string& path : heard) {
    if (path.starts_with(folder + "/")) found.insert(path);
  }
  return found;
}

/// Puts a new file into every folder below, and gives their paths.
inline std::set<std::string> probeEachFolder(const std::string& root, const std::string& name) {
  std::set<std::string> probes;
  for (const auto& item : std::filesystem::recursive_directory_iterator(root)) {
    if (item.symlink_status().type() == std::filesystem::file_type::directory)
      probes.insert(item.path().string() + "/" + name);
  }
  for (const std::string& probe : probes) std::ofstream(probe) << "content";
  return probes;
}

inline std::set<std::string> without(const std::set<std::string>& all, const std::set<std::string>& some) {
  std::set<std::string> rest;
  std::set_difference(all.begin(), all.end(), some.begin(), some.end(), std::inserter(rest, rest.end()));
  return rest;
}
