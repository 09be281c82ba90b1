#pragma once

#include <optional>
#include <sys/types.h>

namespace quarn {

/// What the removal of one item depends on, beside the rights to its folder.
struct RemovalFacts {
  bool isFolder = false;
  uid_t owner = 0;
  bool isMountPoint = false;
  /// The number with which the system refuses the removal for the item's own sake: a flag or a list of
  /// rights; 0 if it doesn't.
  int refusal = 0;
};

/// What each system answers. Nothing, with `errno` set, if the item can't be looked at.
std::optional<RemovalFacts> removalFacts(int folder, const char* name);

}  // namespace quarn
