#pragma once

#include <vector>

#include "Platform/Platform.h"
#include "QuarnCore/backup/BackupRecord.h"

/// Keeps the records of backups: "backup.json" in the folder of each.
namespace quarn::BackupStore {

/// The name of the file. No source may have it.
inline constexpr const char* recordFile = "backup.json";

/// Returns the folder on a drive that holds its backups.
Path root(const Path& drive);

/// Writes the record into its backup's folder. The file appears whole or not at all. Throws.
void save(Platform& platform, const BackupRecord& record);

/// Returns the records on a drive, sorted by identifier. What can't be read as one is left out.
std::vector<BackupRecord> list(const ReadOnlyPlatform& platform, const Path& drive);

}  // namespace quarn::BackupStore
