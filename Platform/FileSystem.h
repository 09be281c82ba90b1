#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Clock.h"
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
  unknown,  ///< everything else, such as a FIFO
};

/// Identifies a folder, or a file that isn't empty, for as long as it exists. It doesn't identify empty
/// files: some volumes give all of them the same inode number.
struct FileIdentity {
  std::int32_t device = 0;
  std::uint64_t inode = 0;
  bool operator==(const FileIdentity&) const = default;
};

/// Describes an item itself; for a link, the link and not its target. Sizes are in bytes.
struct FileAttributes {
  FileKind kind = FileKind::unknown;
  std::optional<std::int64_t> size;                ///< absent for a folder
  std::optional<std::int64_t> totalAllocatedSize;  ///< all forks and metadata; absent if unknown
  std::optional<std::int64_t> allocatedSize;       ///< the data fork; absent if unknown
  std::int64_t blockBytes = 0;                     ///< `st_blocks` times 512
  FileIdentity identity;
  std::uint32_t permissions = 0;  ///< the permission bits, as chmod(2) takes them
  Moment modified{};              ///< when the content last changed, as far as a `Moment` reaches
  bool operator==(const FileAttributes&) const = default;
};

/// Which names a listing or a walk leaves out.
enum class Hidden {
  included,
  skipped,     ///< names that begin with ".", and on a Mac items with the hidden flag
  skippedDots  ///< only names that begin with "."
};

enum class WalkStep { proceed, skipDescendants, stop };

/// An item met on a walk. It is valid only during the visit.
class WalkItem {
 public:
  virtual ~WalkItem() = default;
  /// Returns the path below the root, without a leading slash.
  virtual std::string_view relativePath() const = 0;
  /// Returns the kind that the item's folder reports. A link is a link.
  virtual FileKind kind() const = 0;
  /// Looks the attributes up. Fails if the item is gone.
  virtual Result<FileAttributes> attributes() const = 0;
  /// Looks up the item at the same relative path below another root, such as the copy of a tree. The path to
  /// its folder is resolved once per folder and not once per item.
  virtual Result<FileAttributes> attributesBelow(const Path& otherRoot) const = 0;
  /// See `FileSystem::obstacleToRemoval`.
  virtual std::optional<PlatformError> obstacleToRemoval() const = 0;
};

/// Receives what a walk meets.
class WalkVisitor {
 public:
  virtual ~WalkVisitor() = default;
  virtual WalkStep visit(const WalkItem& item) = 0;
  /// Called for a folder (or the root) that can't be listed. `proceed` goes on with the rest; `stop` ends the
  /// walk.
  virtual WalkStep failed(const Path& item, const PlatformError& error) = 0;
};

/// The file operations. Unless its comment says otherwise, an operation doesn't follow a link in the last
/// component, makes no parent folders and replaces nothing. Failures carry `cocoaErrorDomain` and the
/// sentences that a Mac shows.
class FileSystem {
 public:
  virtual ~FileSystem() = default;

  // Looking. None of these changes anything.

  /// Returns whether something exists at the path. Follows links: returns false for a dangling link, an empty
  /// path, and a path through a folder that may not be searched.
  virtual bool exists(const Path& path) const = 0;
  /// Returns whether the path is a folder. Follows links: true for a link to a folder.
  virtual bool isFolder(const Path& path) const = 0;
  /// Describes the item itself. Missing: `fileReadNoSuchFile`.
  virtual Result<FileAttributes> attributes(const Path& path) const = 0;
  /// Returns whether the item itself is a link, dangling or not.
  bool isSymbolicLink(const Path& path) const {
    const auto found = attributes(path);
    return found && found->kind == FileKind::symbolicLink;
  }
  /// Returns the stored target of a link. Not a link: `fileReadUnknown`. Missing: `fileReadNoSuchFile`.
  virtual Result<std::string> readSymbolicLink(const Path& path) const = 0;
  /// Resolves every link in the path. Spells each name as the disk does, and chooses the customary path where
  /// several lead to the same item. Any component missing, or links that lead in a circle:
  /// `fileReadNoSuchFile`.
  virtual Result<Path> realPath(const Path& path) const = 0;
  /// The same, but where that fails, for whatever reason, returns the path standardized and unresolved.
  Path resolvingLinks(const Path& path) const {
    const auto found = realPath(path);
    return found ? *found : standardized(path);
  }
  /// Removes doubled slashes, "." and "..". Resolves links only if ".." occurs and the whole path exists;
  /// otherwise it doesn't touch the disk, except that a Mac also asks it before it drops a leading
  /// "/private".
  virtual Path standardized(const Path& path) const = 0;
  /// Returns the names in a folder, in the order of the disk, without "." and "..". A path that is a link to
  /// a folder fails with `fileReadUnknown`. Missing: `fileReadNoSuchFile`.
  virtual Result<std::vector<std::string>> list(const Path& folder, Hidden hidden) const = 0;
  /// Visits everything below `root`, each folder before its contents, in no particular order otherwise;
  /// `root` itself is not visited. Links are visited and never entered, but `root` may be a link, which is
  /// followed. For a missing root `failed` is called once; a root that isn't a folder has nothing below it.
  virtual void walk(const Path& root, Hidden hidden, WalkVisitor& visitor) const = 0;
  /// The same in path order: the items of a folder by the bytes of their names, and each folder directly
  /// followed by its contents, as in "Foo", "Foo/x", "Foo bar", "Foo.app". Each name of a folder is visited
  /// once, even if the folder changes while it is read. Keeps the names of the folders on the way down.
  virtual void walkSorted(const Path& root, Hidden hidden, WalkVisitor& visitor) const = 0;
  /// Returns all bytes of a regular file; follows links. Missing: `fileReadNoSuchFile`. Not a regular file,
  /// such as a folder or a FIFO: `fileReadUnknown`. Larger than 256 MB: `fileReadTooLarge`.
  virtual Result<std::string> read(const Path& file) const = 0;
  /// Returns the first bytes of a regular file, at most `count`, without reading the rest; follows links.
  /// Fails as `read` does, but a file may have any size.
  virtual Result<std::string> readStart(const Path& file, std::size_t count) const = 0;
  /// Returns the error that `remove` would meet at this item, as far as that can be known without trying: the
  /// item is locked, a volume is mounted on it, its folder doesn't let it go, or it is a folder that has
  /// contents and may not be changed. Doesn't look at what lies below the item. Returns nothing for an item
  /// that doesn't exist.
  virtual std::optional<PlatformError> obstacleToRemoval(const Path& item) const = 0;

  // Changing.

  /// Makes a folder and its missing parents. Succeeds if the folder, or a link to a folder, already exists. A
  /// file in its place: `fileWriteFileExists`.
  virtual Result<void> createFolder(const Path& folder) = 0;
  /// Makes a link and stores `target` as given. Anything at `link`, even a dangling link:
  /// `fileWriteFileExists`.
  virtual Result<void> createSymbolicLink(const Path& link, const std::string& target) = 0;
  /// Creates an empty folder or file, accessible only to its owner, where nothing exists. If several programs
  /// try this for the same path, only one succeeds. Anything there, even a dangling link:
  /// `fileWriteFileExists`.
  virtual Result<void> claim(const Path& place, FileKind folderOrRegular) = 0;
  /// Removes an item: a folder with its contents, a link by itself. Stops at the first failure and leaves the
  /// rest; the error names `item`, whichever item below it was the cause. Never enters another volume mounted
  /// inside; that counts as a failure.
  virtual Result<void> remove(const Path& item) = 0;
  /// Removes a link, dangling or not, and nothing else. If a folder has just taken the link's place, the
  /// folder stays. Not a link: `fileWriteUnknown`.
  virtual Result<void> removeSymbolicLink(const Path& link) = 0;
  /// Moves an item within its volume; a link moves as a link. Returns true if it was moved, and false, with
  /// nothing changed, if the destination lies on another volume. Anything at `destination`, even a dangling
  /// link: `fileWriteFileExists`.
  virtual Result<bool> rename(const Path& source, const Path& destination) = 0;
  /// Copies an item and everything below it; links are copied as links. Anything at `destination`:
  /// `fileWriteFileExists`. Keeps modes, times, extended attributes and holes, and the owner if permitted.
  /// Leaves out what the other volume can't store and attributes that only the system may set. Hard links to
  /// one file become separate files. Sockets, devices and volumes mounted inside can't be copied. After a
  /// failure it removes what it made.
  virtual Result<void> copy(const Path& source, const Path& destination) = 0;
  /// Gives a folder or a file the mode, times and attributes of another one, by the rules of `copy`.
  virtual Result<void> copyAttributes(const Path& source, const Path& destination) = 0;
  /// Sets the permission bits of a file or a folder, as chmod(2) takes them. A link: `fileWriteUnknown`.
  virtual Result<void> setPermissions(const Path& item, std::uint32_t mode) = 0;
  /// Replaces the whole content of a file or none of it, by writing a temporary file in the same folder and
  /// renaming it. A link at `file` is replaced by a file. Keeps the mode of a file that it replaces.
  virtual Result<void> writeAtomically(const Path& file, std::string_view content) = 0;
  /// Returns once everything written to the volume of `item` has reached the volume, and not only the
  /// system's memory. Fails if the volume is gone or fails meanwhile. On a volume that doesn't support this
  /// as a whole, such as one on a network, only the item, or the folder that holds it, is written out.
  virtual Result<void> flush(const Path& item) = 0;
};

}  // namespace quarn
