#include "QuarnCore/installer/FilesystemEventRecorder.h"

#include "Platform/Text.h"

namespace quarn {

FilesystemEventRecorder::FilesystemEventRecorder(const ReadOnlyPlatform& platform,
                                                 const std::vector<Path>& roots)
    : platform_(platform) {
  for (const Path& root : roots) roots_.push_back(platform_.files.standardized(root));
}

void FilesystemEventRecorder::start() {
  if (stream_ || roots_.empty()) return;
  stream_ = platform_.events.watch(roots_, [this](const std::vector<Path>& changed) { record(changed); });
}

std::vector<std::string> FilesystemEventRecorder::stop() {
  // Before the lock is taken: the stream delivers the rest, for which `record` takes it.
  stream_.reset();
  const std::lock_guard guard(lock_);
  std::vector<std::string> sorted;
  for (const auto& [spelling, path] : paths_) sorted.push_back(path);
  return sorted;
}

void FilesystemEventRecorder::record(const std::vector<Path>& changed) {
  const std::lock_guard guard(lock_);
  for (const Path& path : changed) {
    const std::string text = platform_.files.standardized(path).text();
    paths_.try_emplace(Text::canonical(text), text);
  }
}

}  // namespace quarn
