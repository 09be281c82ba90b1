#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace quarn {

/// The path of a name in a folder.
std::string pathIn(const std::string& folder, std::string_view name);

/// Which folder each watch belongs to. A path has at most one watch, and a watch one path.
class WatchedFolders {
 public:
  /// Stands for the watch of a folder that is known and couldn't be watched.
  static constexpr int unwatched = -1;

  /// Returns the watch of a folder, or nothing if the folder isn't known.
  std::optional<int> watch(const std::string& path) const;
  /// Returns the path of a watch, or null if no folder has it. Valid until the next change.
  const std::string* path(int watch) const;
  const std::map<std::string, int>& all() const { return byPath_; }

  /// Gives a folder a watch, and takes it from the folder that had it. Returns the watch that the folder had
  /// before and no longer has, or `unwatched`.
  int put(const std::string& path, int watch);
  /// Forgets the folder that has a watch, but none below it.
  void forget(int watch);
  /// Forgets a folder and all below it. Returns their watches.
  std::vector<int> takeWithAllBelow(const std::string& path);
  /// Forgets what is below a folder. Returns the watches.
  std::vector<int> takeAllBelow(const std::string& path);

 private:
  using ByPath = std::map<std::string, int>;

  void take(ByPath::iterator folder, std::vector<int>& watches);

  ByPath byPath_;
  std::unordered_map<int, std::string> byWatch_;
};

}  // namespace quarn
