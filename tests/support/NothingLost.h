#pragma once

#include <map>
#include <string>
#include <vector>

/// Looks at the whole tree after something went wrong. Made before, it remembers an item and everything
/// beside it in the home, in the folder of applications and on the drives.
class NothingLost {
 public:
  explicit NothingLost(const std::string& item);

  /// Every place at which the item stands whole, to the byte, sorted.
  std::vector<std::string> wholeAt() const;
  /// What was there beside the item and is no longer as it was, and what is new and lies neither at nor
  /// below one of `allowed`; a line each. Empty is good.
  std::string foreignChanges(const std::vector<std::string>& allowed) const;

 private:
  std::string item_;
  std::vector<std::string> tree_;
  std::map<std::string, std::string> others_;
};
