#pragma once

#include <stdexcept>
#include <string>

#include "Platform/posix/Descriptor.h"

namespace quarn::room {

/// Why this kind of room cannot be made here; another kind may still work.
struct RoomError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Throws RoomError "WHAT: reason" when `result` is -1; gives it back otherwise.
int check(int result, const std::string& what);

/// Throws RoomError "WHAT: reason"; the reason is the text of errno.
[[noreturn]] void failWithErrno(const std::string& what);

/// Everything until the other side closes.
std::string readAll(const Descriptor& from);

/// A new file, or a new content for it; throws RoomError.
void writeFile(const std::string& path, const std::string& content);

/// Makes `path` and its missing parents (0755); what stands there already is left alone.
void makeFolders(const std::string& path);

}  // namespace quarn::room
