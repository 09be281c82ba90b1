#pragma once

#include "Platform/posix/FolderStack.h"
#include "Platform/system/FolderReader.h"

namespace quarn {

/// What is done on the way through a tree.
class TreeWork {
 public:
  enum class Next {
    goOn,
    enter,  ///< goes into the entry, once its folder has been read to the end
    stop,
  };

  virtual ~TreeWork() = default;
  /// An entry of the innermost folder of `at`.
  virtual Next entry(const FolderStack& at, const FolderReader::Entry& entry) = 0;
  /// The innermost folder of `at` has been opened; not called for the root. False stops.
  virtual bool entered(const FolderStack&) { return true; }
  /// Everything in the innermost folder is done; called while it is still open, not for the root.
  virtual bool finished(const FolderStack&) { return true; }
  /// A folder has been left, and its parent is the innermost.
  virtual bool left(const FolderStack&, const char* /*name*/) { return true; }
  /// The folder `name` in `at` (empty: `at` itself) can't be opened, read or found again.
  virtual bool failed(const FolderStack& at, std::string_view name, int errnoValue) = 0;
};

/// Goes through everything below `root`, each folder before its contents. A folder is read to its end
/// before any of its children is entered, so no place in it need be remembered while deeper ones are
/// worked on, and the work may remove what it is shown. No recursion: any depth will do.
void descend(Descriptor root, TreeWork& work);

}  // namespace quarn
