#pragma once

#include <functional>
#include <string>

#include "Platform/Path.h"
#include "Platform/PlatformError.h"

namespace quarn::CocoaError {

/// What was being done; it chooses between the reading and the writing numbers and the sentence.
enum class Operation {
  readFile,  ///< read a file, its attributes or a link; the source of a copy that is missing
  listFolder,
  remove,
  move,
  copy,
  save,  ///< create a folder or a link, write a file in place, set permissions
  saveAtomically,
  trash,
};

/// The failure of an operation, as a Mac tells it. `item` is what was worked on, `destination` where it
/// was to go (move, copy). `volumeName` is asked only for a full or a read-only volume.
PlatformError fromErrno(Operation operation, int errnoValue, const Path& item, const Path& destination = {},
                        const std::function<std::string()>& volumeName = {});

/// Likewise, with the number that the system itself has given.
PlatformError fromCode(Operation operation, int code, const Path& item, const Path& destination = {},
                       const std::function<std::string()>& volumeName = {});

/// A tool that can't be started.
PlatformError toolNotStarted(const Path& executable);
/// The system has no descriptor, process or memory left for a tool, or can't hand it its words.
PlatformError outOfResources(int errnoValue);
/// Of a domain whose sentences aren't known here.
PlatformError ofDomain(const std::string& domain, int code);
/// The Trash of a volume that has none.
PlatformError noTrash(const Path& item, const std::string& volumeName);
/// A file that isn't UTF-8 text.
PlatformError notUTF8(const Path& file);

}  // namespace quarn::CocoaError
