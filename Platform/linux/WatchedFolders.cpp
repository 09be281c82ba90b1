#include "Platform/linux/WatchedFolders.h"

namespace quarn {

std::string pathIn(const std::string& folder, std::string_view name) {
  std::string path = folder;
  if (!path.ends_with('/')) path += '/';
  return path.append(name);
}

std::optional<int> WatchedFolders::watch(const std::string& path) const {
  const auto found = byPath_.find(path);
  if (found == byPath_.end()) return std::nullopt;
  return found->second;
}

const std::string* WatchedFolders::path(int watch) const {
  const auto found = byWatch_.find(watch);
  return found == byWatch_.end() ? nullptr : &found->second;
}

int WatchedFolders::put(const std::string& path, int watch) {
  const auto [place, isNew] = byPath_.try_emplace(path, watch);
  if (!isNew && place->second == watch) return unwatched;
  const int previous = isNew ? unwatched : place->second;
  byWatch_.erase(previous);
  place->second = watch;
  if (watch == unwatched) return previous;
  if (const std::string* other = this->path(watch)) byPath_.erase(*other);
  byWatch_[watch] = path;
  return previous;
}

void WatchedFolders::forget(int watch) {
  const auto found = byWatch_.find(watch);
  if (found == byWatch_.end()) return;
  byPath_.erase(found->second);
  byWatch_.erase(found);
}

std::vector<int> WatchedFolders::takeWithAllBelow(const std::string& path) {
  std::vector<int> watches = takeAllBelow(path);
  if (const auto folder = byPath_.find(path); folder != byPath_.end()) take(folder, watches);
  return watches;
}

std::vector<int> WatchedFolders::takeAllBelow(const std::string& path) {
  std::vector<int> watches;
  const std::string prefix = pathIn(path, "");
  // Sorted by bytes, the paths with a prefix stand together, and the root's own path stands before them.
  for (auto folder = byPath_.upper_bound(prefix);
       folder != byPath_.end() && folder->first.starts_with(prefix);)
    take(folder++, watches);
  return watches;
}

void WatchedFolders::take(ByPath::iterator folder, std::vector<int>& watches) {
  if (folder->second != unwatched) {
    byWatch_.erase(folder->second);
    watches.push_back(folder->second);
  }
  byPath_.erase(folder);
}

}  // namespace quarn
