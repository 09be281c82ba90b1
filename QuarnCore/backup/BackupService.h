#pragma once

#include <functional>
#include <string>
#include <vector>

#include "Platform/Platform.h"
#include "QuarnCore/backup/BackupRecord.h"

/// Copies a few sources to a dated folder on a drive.
namespace quarn::BackupService {

/// Receives a sentence for each item that had to make room for another one, with where it is now. They come
/// when everything has been copied and has its name, or right before the error.
using Warn = std::function<void(const std::string& sentence)>;

/// Copies each source that exists, takes the product's word out of all names in the copies, and writes the
/// record once everything has reached the drive. A source that is a link is what it leads to. Of two items
/// that get one name, the one that has it is moved out of the way, and stays. The sources and earlier backups
/// aren't changed.
///
/// Throws a `LocalizedError`: before anything is made, if the drive isn't mounted, if the folder for backups
/// isn't on it, or if a source is called as the record is, or holds that folder, another volume, a socket or
/// a device; afterwards, if something can't be copied, renamed or written. What was made by then stays,
/// without a record.
BackupRecord create(
    Platform& platform, const std::vector<Path>& sources, const Path& drive,
    const Warn& warn = [](const std::string&) {});

/// Returns the backups on a drive, sorted by identifier. What can't be read as one is left out.
std::vector<BackupRecord> list(const ReadOnlyPlatform& platform, const Path& drive);

}  // namespace quarn::BackupService
