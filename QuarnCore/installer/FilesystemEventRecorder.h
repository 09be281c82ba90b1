#pragma once

#include <map>
#include <mutex>
#include <string>

#include "Platform/Platform.h"

namespace quarn {

/// Gathers the paths below some roots that change while it watches. It never fails: without help of the
/// system it gathers nothing. Used by one thread; what the system tells arrives on another one.
class FilesystemEventRecorder {
 public:
  FilesystemEventRecorder(const ReadOnlyPlatform& platform, const std::vector<Path>& roots);
  FilesystemEventRecorder(const FilesystemEventRecorder&) = delete;
  FilesystemEventRecorder& operator=(const FilesystemEventRecorder&) = delete;

  /// Begins to watch. Does nothing if it watches already or has no roots.
  void start();
  /// Stops watching and returns all paths gathered so far, standardized and sorted. Texts that are
  /// canonically equivalent are one path. Called again, returns the same.
  std::vector<std::string> stop();

 private:
  void record(const std::vector<Path>& changed);

  const ReadOnlyPlatform platform_;
  std::vector<Path> roots_;
  std::mutex lock_;
  std::map<std::string, std::string> paths_;  // by their canonical spelling
  // The last member, and so the first to go: nothing is recorded while the others are destroyed.
  std::unique_ptr<FileEventStream> stream_;
};

}  // namespace quarn
