#pragma once

#include <string>

namespace bench {

/// Prints the rows on snapshots of files.
void printSnapshotRows(const std::string& subject);

}  // namespace bench
