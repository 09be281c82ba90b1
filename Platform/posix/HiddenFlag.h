#pragma once

#include "Platform/FileSystem.h"

namespace quarn {

/// Whether the system hides an item for another reason than the dot that its name begins with.
bool hasHiddenFlag(int folder, const char* name);

/// Whether a listing or a walk leaves an item out.
inline bool isLeftOut(Hidden hidden, int folder, const char* name) {
  if (hidden == Hidden::included) return false;
  return name[0] == '.' || (hidden == Hidden::skipped && hasHiddenFlag(folder, name));
}

}  // namespace quarn
