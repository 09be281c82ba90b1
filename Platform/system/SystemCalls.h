#pragma once

#include <optional>
#include <string>
#include <sys/types.h>

#include "Platform/FileSystem.h"
#include "Platform/Path.h"

/// What the shared code asks of each system, since its calls differ. An item is a name in an open folder; a
/// link is looked at itself. A failure is told by its error number, 0 being none.
namespace quarn {

/// What an item itself is; a link is described, never its target. Nothing, with `errno` set, if it can't be
/// told.
std::optional<FileAttributes> itemAttributes(int folder, const char* name);

/// Whether the system hides an item for another reason than the dot that its name begins with.
bool hasHiddenFlag(int folder, const char* name);

/// What the removal of one item depends on, beside the rights to its folder.
struct RemovalFacts {
  bool isFolder = false;
  uid_t owner = 0;
  bool isMountPoint = false;
  /// The number with which the system refuses the removal for the item's own sake: a flag or a list of
  /// rights; 0 if it doesn't.
  int refusal = 0;
};

/// Nothing, with `errno` set, if the item can't be looked at.
std::optional<RemovalFacts> removalFacts(int folder, const char* name);

/// Whether an open folder, met inside a tree of `device`, is the top of something mounted there. A failure to
/// tell counts as true.
bool isMountedOver(dev_t device, int folder);

/// A rename that fails with EEXIST if anything, a dangling link too, stands at the destination. A volume that
/// doesn't know such a rename says so.
int exclusiveRenameCall(int sourceFolder, const char* source, int destinationFolder, const char* destination);

/// Writes out an open file, so that after a power cut no later change can be there without it.
int syncFile(int file);

/// Asks the volume of an open item to write out everything, down to the medium, and waits.
int syncVolume(int item);

/// The name of the volume that holds a path, of which the last component need not exist.
std::string volumeName(const Path& path);

/// The process that started a process, or took it over from one that has ended; 0 if there is none.
int parentOf(int process);

}  // namespace quarn
