#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Platform/Platform.h"

/// The writing side of the installs database of `setup-ledger`. A database that is absent, locked or of
/// another schema is left as it is; nothing here throws or creates one.
namespace quarn::InstallsDBWriter {

/// A move, in the ledger's terms.
struct Move {
  Path source;
  Path destination;
  std::optional<std::string> bundleId;
  std::optional<std::string> version;
  std::int64_t sizeBytes = 0;
  std::vector<std::string> trackedFiles;
};

void recordMove(Platform& platform, const Move& move, const Path& database);
/// Closes the newest live row of a move of that name.
void recordRestore(Platform& platform, const Path& source, const Path& database);
/// Deletes the rows of files that are gone; how many.
int forgetMissingTrackedFiles(Platform& platform, const std::string& installId, const Path& database);

}  // namespace quarn::InstallsDBWriter
