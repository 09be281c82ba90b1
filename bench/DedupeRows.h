#pragma once

namespace bench {

/// Prints the row on the scan for duplicates. Needs a room without applications, and leaves it so.
void printDedupeRows();

}  // namespace bench
