#pragma once

#include <string>
#include <vector>

#include "Platform/Path.h"

namespace quarn {

/// What had to make room in the copies of one backup. Folders around it are renamed and set aside later, so
/// where it is can be told only in the end.
class SetAside {
 public:
  /// Notes that the item at `place` was moved to `now`; that is empty if the system didn't tell where in the
  /// Trash it is.
  void add(const Path& place, const Path& now);
  /// Notes that an item, with everything in it, was moved.
  void moved(const Path& from, const Path& to);

  /// Returns a sentence for each item, in the order in which they were set aside.
  std::vector<std::string> sentences() const;

 private:
  struct Item {
    Path place;  ///< where the one is that it made room for
    Path now;
  };
  std::vector<Item> items_;
};

}  // namespace quarn
