#pragma once

#include <string>
#include <vector>

#include "Platform/Platform.h"
#include "QuarnCore/foundation/CommandRunner.h"

/// What installing and moving plug-ins share. The user may write on the drive; the system's folders of
/// plug-ins belong to root, so what changes them is done through a wrapper that runs a command as root. No
/// tool has a time limit.
namespace quarn::PluginTools {

/// Runs a command as root, which the wrapper looks for in the system's folders.
CommandResult asRoot(const ReadOnlyPlatform& platform, const std::vector<std::string>& words);

/// Copies a bundle with `ditto`. A source that is a link to a folder is followed. A folder at the destination
/// is merged with what is copied.
CommandResult copy(const ReadOnlyPlatform& platform, const Path& source, const Path& destination);

/// Throws an error with this domain and code unless the tool succeeded. Its description is `text`, followed
/// by what the tool wrote to standard error, or by why it couldn't be started.
void requireSucceeded(const CommandResult& result, const char* domain, int code, const std::string& text);

/// What `removeAsRoot` throws if it fails: an error with this domain and code, whose description begins with
/// `text`.
struct RemovalFailure {
  const char* domain;
  int code;
  std::string text;
};

/// Removes an item as root with these flags of `rm`. Throws also if the wrapper only says so. Unlike the file
/// system's own removal, the tool would empty a volume mounted inside.
void removeAsRoot(const ReadOnlyPlatform& platform, const char* flags, const Path& item,
                  const RemovalFailure& failure);

/// Returns whether anything stands at a path, be it a link that leads nowhere. Throws if that can't be told.
bool isAnythingAt(const ReadOnlyPlatform& platform, const Path& place);

/// Writes a copy out to its volume and compares it with its source after that, so that what changes during a
/// long write-out is noticed. Throws if the copy isn't whole. To be called before the source or anything else
/// that it replaces goes, and before the copy itself is changed.
void requireWhole(Platform& platform, const Path& source, const Path& copy);

}  // namespace quarn::PluginTools
