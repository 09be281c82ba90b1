#pragma once

#include <string>
#include <string_view>
#include <sys/stat.h>
#include <vector>

#include "Platform/posix/Descriptor.h"

namespace quarn {

/// The chain of folders from a root down to the one being worked in. Every step is taken from an open
/// folder, so neither the length of a path nor a folder renamed meanwhile matters. Only the innermost
/// folders are kept open; a depth of any size needs a bounded number of descriptors.
class FolderStack {
 public:
  explicit FolderStack(Descriptor root);

  /// The innermost folder. Not open only after a `leave` that failed.
  int folder() const { return levels_.back().descriptor.number(); }
  /// 0 for the root.
  std::size_t depth() const { return levels_.size() - 1; }
  /// Of the innermost folder below the root, without a leading slash; empty for the root.
  std::string_view path() const { return {path_.data(), levels_.back().pathLength}; }
  /// The last component of `path`, as the calls take it.
  const char* name() const;

  /// Down into a child, which must be a folder and no link. Gives 0 or the number of the failure; then
  /// nothing has changed.
  int enter(const char* name);
  /// Up to the parent. Gives 0, or the number of the failure to get hold of the parent again: the parent
  /// is the innermost then, but can only be left.
  int leave();

 private:
  struct Level {
    Descriptor descriptor;
    std::size_t pathLength = 0;
    dev_t device = 0;  // known from when the descriptor is given up
    ino_t inode = 0;
  };

  void giveUpOutermost();
  int reopen(const Descriptor& child);
  Descriptor openFromRoot() const;

  std::vector<Level> levels_;
  std::string path_;
};

}  // namespace quarn
