#pragma once

namespace quarn {

/// Renames, unless anything (a dangling link too) stands at the destination. Gives 0 or the number of the
/// failure. A volume that doesn't know such a rename is looked at first and then renames plainly.
int renameExclusively(int sourceFolder, const char* source, int destinationFolder, const char* destination);

}  // namespace quarn
