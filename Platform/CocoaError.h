#pragma once

#include <functional>
#include <string>

#include "Platform/Path.h"
#include "Platform/PlatformError.h"

namespace quarn::CocoaError {

/// The operation that failed. It selects the sentence, and whether the code is that of reading or of writing.
enum class Operation {
  readFile,  ///< reading a file, its attributes or a link; also copying from a source that is missing
  listFolder,
  remove,
  move,
  copy,
  save,  ///< creating a folder or a link, writing a file in place, setting permissions
  saveAtomically,
  trash,
};

/// Returns the error that a Mac reports for an error number. `item` is what the operation worked on;
/// `destination` is where it was going (move and copy only). `volumeName` is called only for a full or a
/// read-only volume.
PlatformError fromErrno(Operation operation, int errnoValue, const Path& item, const Path& destination = {},
                        const std::function<std::string()>& volumeName = {});

/// Does the same for an error code that the system has already chosen.
PlatformError fromCode(Operation operation, int code, const Path& item, const Path& destination = {},
                       const std::function<std::string()>& volumeName = {});

/// Returns whether a look at an item itself failed because nothing is there; nothing has a name that is too
/// long. After any other failure, something may be there. Not for resolving links: what they lead to may
/// exist at a path that is too long.
bool saysMissing(const PlatformError& error);

/// Returns the error for a tool that can't be started.
PlatformError toolNotStarted(const Path& executable);
/// Returns the error for a tool that couldn't be started because the system has no descriptor, process or
/// memory left, or can't pass on its arguments.
PlatformError outOfResources(int errnoValue);
/// Returns an error of a domain that has no sentences here.
PlatformError ofDomain(const std::string& domain, int code);
/// Returns the error for moving an item to the Trash on a volume that has none.
PlatformError noTrash(const Path& item, const std::string& volumeName);
/// Returns the error for a file that isn't UTF-8 text.
PlatformError notUTF8(const Path& file);
/// Returns the error for bytes that aren't a property list.
PlatformError notPropertyList();

}  // namespace quarn::CocoaError
