#pragma once

#include <string>
#include <string_view>
#include <sys/stat.h>
#include <vector>

#include "Platform/posix/Descriptor.h"

namespace quarn {

/// The chain of open folders from a root down to the current one. Every step is relative to an open folder,
/// so long paths don't matter, nor does a folder that is renamed meanwhile. Only the root and the innermost
/// folders are kept open, so any depth needs a bounded number of descriptors.
class FolderStack {
 public:
  explicit FolderStack(Descriptor root);

  /// Returns the innermost folder. It isn't open only after `leave` has failed.
  int folder() const { return levels_.back().descriptor.number(); }
  /// Returns the depth; 0 is the root.
  std::size_t depth() const { return levels_.size() - 1; }
  /// Returns the path of the innermost folder below the root, without a leading slash. It is empty for the
  /// root.
  std::string_view path() const { return {path_.data(), levels_.back().pathLength}; }
  /// Returns the last component of `path`, ended by a NUL.
  const char* name() const;

  /// Enters a child, which must be a folder and not a link. Returns 0 or the error number; after a failure
  /// nothing has changed.
  int enter(const char* name);
  /// Returns to the parent. Returns 0, or the error number if the parent can't be opened again. The parent is
  /// then the innermost folder, but can only be left.
  int leave();

 private:
  struct Level {
    Descriptor descriptor;
    std::size_t pathLength = 0;
    dev_t device = 0;  // set when the descriptor is closed
    ino_t inode = 0;
  };

  void giveUpOutermost();
  int reopen(const Descriptor& child);
  Descriptor openFromRoot() const;

  std::vector<Level> levels_;
  std::string path_;
};

}  // namespace quarn
