#pragma once

namespace quarn {

/// Copies the extended attributes between open items, the resource fork among them. A volume that keeps
/// none at all gets none, and attributes that only the system may set are left behind; any other one that
/// can't be given is a failure. Gives 0 or the number of the failure.
int copyExtendedAttributes(int source, int destination);

}  // namespace quarn
