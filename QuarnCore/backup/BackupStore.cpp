#include "QuarnCore/backup/BackupStore.h"

#include <algorithm>

#include "QuarnCore/foundation/AppStorageNames.h"
#include "QuarnCore/foundation/RecordFolders.h"

namespace quarn {

template <>
inline constexpr auto storedKeys<BackupRecord> = std::tuple{
    StoredKey{"id", &BackupRecord::id},
    StoredKey{"rootPath", &BackupRecord::rootPath},
    StoredKey{"createdAt", &BackupRecord::createdAt},
    StoredKey{"sourceFileCount", &BackupRecord::sourceFileCount},
    StoredKey{"backupFileCount", &BackupRecord::backupFileCount},
};

namespace {

constexpr RecordFolders<BackupRecord> backups{BackupStore::recordFile, StoredJson::Layout::compact};

}  // namespace

Path BackupStore::root(const Path& drive) {
  return drive.appending(AppStorageNames::backupsRoot);
}

void BackupStore::save(Platform& platform, const BackupRecord& record) {
  backups.save(platform, record, Path(record.rootPath));
}

std::vector<BackupRecord> BackupStore::list(const ReadOnlyPlatform& platform, const Path& drive) {
  // What a link leads to can be listed, and the link itself can't.
  auto records = backups.list(platform, platform.files.resolvingLinks(root(drive)), Hidden::included);
  std::stable_sort(records.begin(), records.end(),
                   [](const BackupRecord& a, const BackupRecord& b) { return a.id < b.id; });
  return records;
}

}  // namespace quarn
