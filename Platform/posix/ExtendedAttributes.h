#pragma once

#include <cstddef>
#include <sys/types.h>

namespace quarn {

/// Copies the extended attributes between open items. A volume that keeps none at all gets none, and
/// attributes that only the system may set are left behind; one of the person's own that can't be given is
/// a failure. Gives 0 or the number of the failure.
int copyExtendedAttributes(int source, int destination);

// What each system answers for it, by its calls of these names: -1 with `errno` is a failure.

ssize_t listAttributes(int item, char* names, std::size_t size);
ssize_t getAttribute(int item, const char* name, char* value, std::size_t size);
int setAttribute(int item, const char* name, const char* value, std::size_t size);
/// Whether an attribute may be left behind that was refused with this number: one of the system's own, one
/// that vanished meanwhile, or any on a volume that keeps none.
bool mayLeaveBehind(int errnoValue, const char* name);

}  // namespace quarn
