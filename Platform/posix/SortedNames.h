#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Platform/system/FolderReader.h"

namespace quarn {

/// The entries, still to be visited, of the folders on the way down. The innermost folder is the last level.
/// The names of all levels are in one text, so that a deep tree needs no allocation per folder.
class SortedNames {
 public:
  void beginLevel();
  /// Adds an entry to the last level, in any order.
  void add(const FolderReader::Entry& entry);
  /// Puts the last level in the order of its names' bytes. readdir(3) may return a name twice if the folder
  /// changes meanwhile; such a name is kept once.
  void sortLevel();
  /// Takes the first entry of the last level. Its name is valid until the next level begins. Returns nothing,
  /// and ends the level, if the level has none left.
  std::optional<FolderReader::Entry> take();

 private:
  struct Item {
    std::size_t name;  // where it begins
    std::optional<FileKind> kind;
  };
  struct Level {
    std::size_t names;
    std::size_t items;
  };

  const char* nameOf(const Item& item) const { return names_.c_str() + item.name; }

  std::string names_;
  std::vector<Item> items_;  // a sorted level has its first entry at the end
  std::vector<Level> levels_;
};

}  // namespace quarn
