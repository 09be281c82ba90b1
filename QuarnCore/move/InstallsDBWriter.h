#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Platform/Platform.h"

/// Writes to the installs database of `setup-ledger`. A database that is missing, locked or has another
/// schema is left alone; nothing here throws or creates a database.
namespace quarn::InstallsDBWriter {

/// A move as the ledger records it.
struct Move {
  Path source;
  Path destination;
  std::optional<std::string> bundleId;
  std::optional<std::string> version;
  std::int64_t sizeBytes = 0;
  std::vector<std::string> trackedFiles;
};

void recordMove(Platform& platform, const Move& move, const Path& database);
/// Marks the newest open row of a move with this name as uninstalled.
void recordRestore(Platform& platform, const Path& source, const Path& database);
/// Deletes the rows of files that no longer exist. Returns how many.
int forgetMissingTrackedFiles(Platform& platform, const std::string& installId, const Path& database);

}  // namespace quarn::InstallsDBWriter
