#pragma once

#include <optional>
#include <string>
#include <sys/types.h>

#include "Platform/FileSystem.h"
#include "Platform/Path.h"

/// What the shared code needs from each system because the calls differ. An item is a name in an open folder.
/// Links are never followed. Functions that return an error number return 0 on success.
namespace quarn {

/// Describes an item itself; for a link, the link and not its target. Returns nothing, with `errno` set, on
/// failure.
std::optional<FileAttributes> itemAttributes(int folder, const char* name);

/// Returns whether the system hides an item for a reason other than a leading dot in its name.
bool hasHiddenFlag(int folder, const char* name);

/// What decides whether an item can be removed, besides the permissions of its folder.
struct RemovalFacts {
  bool isFolder = false;
  uid_t owner = 0;
  bool isMountPoint = false;
  /// The error number with which the system would refuse to remove the item because of a flag or an access
  /// control list; 0 if it wouldn't.
  int refusal = 0;
};

/// Returns nothing, with `errno` set, if the item can't be looked up.
std::optional<RemovalFacts> removalFacts(int folder, const char* name);

/// Returns whether an open folder inside a tree of `device` is the root of something mounted there. Returns
/// true if that can't be determined.
bool isMountedOver(dev_t device, int folder);

/// Renames an item, or fails with EEXIST if anything, even a dangling link, exists at the destination. Fails
/// with another error number on a volume without such a rename.
int exclusiveRenameCall(int sourceFolder, const char* source, int destinationFolder, const char* destination);

/// Writes out an open file in such a way that no later change survives a power cut without it.
int syncFile(int file);

/// Has the volume of an open item write out everything down to the storage medium, and waits for that.
int syncVolume(int item);

/// Returns the name of the volume that holds a path. The last component of the path need not exist.
std::string volumeName(const Path& path);

/// Returns the parent of a process, or 0 if it has none. If the process that started it has ended, the parent
/// is the one that adopted it.
int parentOf(int process);

}  // namespace quarn
