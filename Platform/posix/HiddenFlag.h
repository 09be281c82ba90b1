#pragma once

namespace quarn {

/// Whether the system hides an item for another reason than the dot that its name begins with.
bool hasHiddenFlag(int folder, const char* name);

}  // namespace quarn
