#include "tests/support/NothingLost.h"

#include <algorithm>
#include <filesystem>

#include "tests/support/Scene.h"

namespace {

namespace fs = std::filesystem;

const std::vector<std::string> roots = {"/Applications", "/Library", "/Users", "/Volumes"};

bool isAtOrBelow(const std::string& path, const std::string& root) {
  return path == root || path.starts_with(root + "/");
}

std::vector<std::string> everything() {
  std::vector<std::string> paths;
  for (const std::string& root : roots) {
    for (const auto& item : fs::recursive_directory_iterator(root)) paths.push_back(item.path().string());
  }
  std::sort(paths.begin(), paths.end());
  return paths;
}

/// Kind, mode, size and content of one item; of a folder, what doesn't depend on what it holds.
std::string facts(const std::string& path) {
  const auto status = fs::symlink_status(path);
  std::string text = std::to_string(static_cast<int>(status.type())) + " ";
  if (fs::is_symlink(status)) return text + scene::target(path);
  text += std::to_string(static_cast<unsigned>(status.permissions()));
  return fs::is_regular_file(status) ? text + " " + scene::read(path) : text;
}

}  // namespace

NothingLost::NothingLost(const std::string& item) : item_(item), tree_(scene::tree(item)) {
  for (const std::string& path : everything()) {
    if (!isAtOrBelow(path, item_)) others_[path] = facts(path);
  }
}

std::vector<std::string> NothingLost::wholeAt() const {
  std::vector<std::string> places;
  for (const std::string& path : everything()) {
    if (scene::tree(path) == tree_) places.push_back(path);
  }
  return places;
}

std::string NothingLost::foreignChanges(const std::vector<std::string>& allowed) const {
  std::string changes;
  for (const auto& [path, before] : others_) {
    if (!scene::exists(path)) {
      changes += "gone: " + path + "\n";
    } else if (facts(path) != before) {
      changes += "changed: " + path + "\n";
    }
  }
  for (const std::string& path : everything()) {
    const bool isAllowed = std::any_of(allowed.begin(), allowed.end(), [&path](const std::string& place) {
      return isAtOrBelow(path, place);
    });
    if (!isAllowed && !others_.contains(path) && !isAtOrBelow(path, item_)) changes += "new: " + path + "\n";
  }
  return changes;
}
