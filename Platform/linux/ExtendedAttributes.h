#pragma once

namespace quarn {

/// Copies the extended attributes between open items. Attributes that the other file system doesn't
/// keep, or that only the system may set, are left behind. Gives 0 or the number of the failure.
int copyExtendedAttributes(int source, int destination);

}  // namespace quarn
