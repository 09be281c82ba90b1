#pragma once

#include "Platform/posix/FolderStack.h"
#include "Platform/system/FolderReader.h"

namespace quarn {

/// The work that a descent through a tree carries out.
class TreeWork {
 public:
  enum class Next {
    goOn,
    enter,  ///< enters the entry, in any case after its folder has been read to the end
    stop,
  };

  virtual ~TreeWork() = default;
  /// Called for an entry of the innermost folder of `at`.
  virtual Next entry(const FolderStack& at, const FolderReader::Entry& entry) = 0;
  /// Called when the innermost folder of `at` has been opened, but not for the root. Returning false stops
  /// the descent.
  virtual bool entered(const FolderStack&) { return true; }
  /// Called when everything in the innermost folder is done and the folder is still open, but not for the
  /// root.
  virtual bool finished(const FolderStack&) { return true; }
  /// Called when a folder has been left and its parent is the innermost one again.
  virtual bool left(const FolderStack&, const char* /*name*/) { return true; }
  /// Called when the folder `name` in `at` (or `at` itself if `name` is empty) can't be opened, read or found
  /// again.
  virtual bool failed(const FolderStack& at, std::string_view name, int errnoValue) = 0;
};

/// Descends through everything below `root`, each folder before its contents. A folder is read to its end
/// before any of its children is entered. So no position in it has to be kept while the descent is deeper,
/// and the work may remove what it is shown. There is no recursion, so the depth doesn't matter.
void descend(Descriptor root, TreeWork& work);

/// Descends in the order of `FileSystem::walkSorted`: a child is entered right after it has been shown, and
/// its siblings are shown after everything below it. The work mustn't move or remove what it is shown.
void descendSorted(Descriptor root, TreeWork& work);

}  // namespace quarn
