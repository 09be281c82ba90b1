#pragma once

#include <functional>
#include <string>

namespace child {

/// What the body mounts is seen by it alone. Only where `canMount()`. Gives what failed in the body, as
/// `failures` does.
std::string failuresWithOwnMounts(const std::function<void()>& body);
bool canMount();
/// Mounts an empty memory file system on a folder; `options` such as "size=1m".
bool mountMemory(const std::string& folder, const std::string& options);
bool unmount(const std::string& folder);
bool makeReadOnly(const std::string& folder);

}  // namespace child
