#pragma once

namespace quarn {

/// Renames an item unless something, even a dangling link, exists at the destination. Returns 0 or the error
/// number. On a volume without an exclusive rename it first checks the destination and then renames, which
/// leaves a short race.
int renameExclusively(int sourceFolder, const char* source, int destinationFolder, const char* destination);

}  // namespace quarn
