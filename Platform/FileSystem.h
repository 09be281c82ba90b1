#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Path.h"
#include "Platform/Result.h"

namespace quarn {

enum class FileKind {
  regular,
  folder,
  symbolicLink,
  socket,
  blockDevice,
  characterDevice,
  unknown,  ///< everything else, a FIFO among it
};

/// Tells a folder, or a file that isn't empty, from every other one while it exists. Some volumes give all
/// empty files one number.
struct FileIdentity {
  std::int32_t device = 0;
  std::uint64_t inode = 0;
  bool operator==(const FileIdentity&) const = default;
};

/// What an item itself is; a link is described, never its target. Sizes are bytes.
struct FileAttributes {
  FileKind kind = FileKind::unknown;
  std::optional<std::int64_t> size;                ///< absent for a folder
  std::optional<std::int64_t> totalAllocatedSize;  ///< all forks and metadata; absent where unknown
  std::optional<std::int64_t> allocatedSize;       ///< the data fork; absent where unknown
  std::int64_t blockBytes = 0;                     ///< `st_blocks` times 512
  FileIdentity identity;
  bool operator==(const FileAttributes&) const = default;
};

/// Which names a listing or a walk leaves out.
enum class Hidden {
  included,
  skipped,     ///< what the system hides: dot names, and on a Mac the hidden flag too
  skippedDots  ///< names that begin with "." and nothing else
};

enum class WalkStep { proceed, skipDescendants, stop };

/// An item met on a walk. Valid only during the visit.
class WalkItem {
 public:
  virtual ~WalkItem() = default;
  /// Below the root, without a leading slash.
  virtual std::string_view relativePath() const = 0;
  /// As told by the folder that holds it; never follows a link.
  virtual FileKind kind() const = 0;
  /// Looked up when first asked for; fails when the item is gone.
  virtual Result<FileAttributes> attributes() const = 0;
  /// Those of the item at the same place below another root, such as the copy of a tree. The way there
  /// is looked up once a folder and not once an item.
  virtual Result<FileAttributes> attributesBelow(const Path& otherRoot) const = 0;
  /// As `FileSystem::obstacleToRemoval` tells it.
  virtual std::optional<PlatformError> obstacleToRemoval() const = 0;
};

/// Who is called on a walk.
class WalkVisitor {
 public:
  virtual ~WalkVisitor() = default;
  virtual WalkStep visit(const WalkItem& item) = 0;
  /// A folder (or the root) that can't be listed. `proceed` goes on with the rest, `stop` ends the walk.
  virtual WalkStep failed(const Path& item, const PlatformError& error) = 0;
};

/// The file operations. Unless an operation says otherwise it doesn't follow a link that is the last
/// component, makes no parent folders and replaces nothing. Failures carry `cocoaErrorDomain` and the
/// sentences of the system.
class FileSystem {
 public:
  virtual ~FileSystem() = default;

  // Looking. Nothing here changes anything.

  /// Follows links: a dangling link, an empty path or a parent that can't be searched give false.
  virtual bool exists(const Path& path) const = 0;
  /// Follows links: a link to a folder is one.
  virtual bool isFolder(const Path& path) const = 0;
  /// The item itself. Missing: `fileReadNoSuchFile`.
  virtual Result<FileAttributes> attributes(const Path& path) const = 0;
  /// The item itself is a link, dangling or not.
  bool isSymbolicLink(const Path& path) const {
    const auto found = attributes(path);
    return found && found->kind == FileKind::symbolicLink;
  }
  /// The stored text of a link. Not a link: `fileReadUnknown`. Missing: `fileReadNoSuchFile`.
  virtual Result<std::string> readSymbolicLink(const Path& path) const = 0;
  /// Every link of the path resolved, each name as the disk spells it, of several ways to one item the
  /// customary one; the path unresolved if any component is missing. Standardized.
  virtual Path resolvingLinks(const Path& path) const = 0;
  /// Doubled slashes, "." and ".." removed. Links are resolved only when ".." occurs and the whole
  /// path exists; otherwise the disk isn't asked.
  virtual Path standardized(const Path& path) const = 0;
  /// Names in one folder, in the order of the disk, without "." and "..". A path that is a link to a
  /// folder fails with `fileReadUnknown`. Missing: `fileReadNoSuchFile`.
  virtual Result<std::vector<std::string>> list(const Path& folder, Hidden hidden) const = 0;
  /// Everything below `root`, each folder before its contents, in no promised order; the root itself
  /// is not visited. Links are visited and never entered, a link as root is followed. A missing root
  /// is told to `failed` once; a root that is no folder has nothing below it.
  virtual void walk(const Path& root, Hidden hidden, WalkVisitor& visitor) const = 0;
  /// All bytes of a regular file; follows links. Missing: `fileReadNoSuchFile`. Anything else, a folder
  /// or a FIFO: `fileReadUnknown`. More than 256 MB: `fileReadTooLarge`.
  virtual Result<std::string> read(const Path& file) const = 0;
  /// What would stop `remove` at this item, as far as that can be told without trying: it is locked, a
  /// volume is mounted on it, its folder keeps it, or it is a folder that holds something and may not be
  /// changed. Tells nothing of what lies below, and nothing stands in the way of an item that isn't there.
  virtual std::optional<PlatformError> obstacleToRemoval(const Path& item) const = 0;

  // Changing.

  /// Makes missing parents too. A folder (or a link to one) that exists already is success; a file
  /// that stands there gives `fileWriteFileExists`.
  virtual Result<void> createFolder(const Path& folder) = 0;
  /// `target` is stored as it is. Anything at `link`, a dangling link too: `fileWriteFileExists`.
  virtual Result<void> createSymbolicLink(const Path& link, const std::string& target) = 0;
  /// Makes an empty folder or an empty file, for its owner alone, where nothing stands; so of several
  /// programs that want one place, only one gets it. Anything there, a dangling link too:
  /// `fileWriteFileExists`.
  virtual Result<void> claim(const Path& place, FileKind folderOrRegular) = 0;
  /// A folder goes with its contents, a link goes by itself. Stops at the first failure, with a part
  /// removed; the error names `item`, whatever stood in the way below it. Never enters another volume
  /// that is mounted inside: that is such a failure.
  virtual Result<void> remove(const Path& item) = 0;
  /// Removes a link, dangling or not, and nothing else: anything else stays, and a folder that took the
  /// link's place a moment ago stays too. Not a link: `fileWriteUnknown`.
  virtual Result<void> removeSymbolicLink(const Path& link) = 0;
  /// Gives an item another place on its volume, a link as a link. True if it was done; false, with nothing
  /// changed, if the destination lies on another volume. Anything at `destination`, a dangling link too:
  /// `fileWriteFileExists`.
  virtual Result<bool> rename(const Path& source, const Path& destination) = 0;
  /// Copies an item with everything below it, links as links, to a place where nothing stands: anything
  /// there is `fileWriteFileExists`. Keeps modes, times, attributes and holes, and the owner where that is
  /// allowed; what the other volume has no place for, and attributes that only the system may set, are
  /// left out. Names of one hard-linked file become files of their own. A socket, a device and a volume
  /// mounted inside can't be copied. A failure removes what was made.
  virtual Result<void> copy(const Path& source, const Path& destination) = 0;
  /// Gives a folder or a file the mode, times and attributes of another one, by the rules of `copy`.
  virtual Result<void> copyAttributes(const Path& source, const Path& destination) = 0;
  /// The whole new content or the whole old one, never a part: a file beside it, then a rename. A link
  /// at `file` is replaced by a file. Keeps the mode of what it replaces.
  virtual Result<void> writeAtomically(const Path& file, std::string_view content) = 0;
  /// Returns when all that has been written to the volume of `item` has reached it, and not only the
  /// system's memory. A volume that is gone, or failed meanwhile, is an error. A volume that can't be asked
  /// for that, such as one on a network, is asked to write out the item or the folder that holds it.
  virtual Result<void> flush(const Path& item) = 0;
};

}  // namespace quarn
