#include "QuarnCore/backup/BackupService.h"

#include "Platform/CocoaError.h"
#include "Platform/Text.h"
#include "QuarnCore/backup/BackupCopy.h"
#include "QuarnCore/backup/BackupNames.h"
#include "QuarnCore/backup/BackupStore.h"
#include "QuarnCore/foundation/Sighting.h"
#include "QuarnCore/foundation/TimedFolder.h"
#include "QuarnCore/move/ChosenVolume.h"
#include "QuarnCore/move/MountPoints.h"
#include "QuarnCore/move/MoverError.h"

namespace quarn::BackupService {
namespace {

struct Source {
  std::string name;  ///< in the backup
  Path place;        ///< without links, since the copy of a link would hold nothing
  BackupContents contents;
};

/// What can't be looked at isn't missing.
bool isMissing(const FileSystem& files, const Path& path) {
  const auto attributes = files.attributes(path);
  if (attributes) return attributes->kind == FileKind::symbolicLink && !files.exists(path);
  if (!CocoaError::saysMissing(attributes.error())) throw attributes.error();
  return true;
}

std::vector<Source> existing(const ReadOnlyPlatform& platform, const std::vector<Path>& paths) {
  std::vector<Source> sources;
  for (const Path& path : paths) {
    if (isMissing(platform.files, path)) continue;
    const Path named = platform.files.standardized(path);
    const Path place = platform.files.resolvingLinks(named);
    sources.push_back({BackupNames::ofSource(named.lastComponent()), place, {}});
  }
  return sources;
}

/// Refuses a link to somewhere else in the place of the folder for backups.
void requireOnDrive(const ReadOnlyPlatform& platform, const Path& backups, const Path& drive) {
  if (leadsInto(platform.files, backups, drive)) return;
  throw MoveRefused("The folder for backups isn’t on the drive: " +
                    sight(platform.files, backups).leadsTo.text());
}

/// A copy of a folder that holds the copy would have no end.
void requireOutside(const ReadOnlyPlatform& platform, const Path& source, const Path& backups) {
  if (sight(platform.files, backups).orThrow().isAtOrIn(sight(platform.files, source).orThrow()))
    throw MoveRefused("The backups would lie in what is backed up: " + source.text());
}

/// The record is written in JSON, which is UTF-8, and its name is taken. Drives don't mind letter case.
void requireNames(const Path& drive, const std::vector<Source>& sources) {
  if (!Text::isUTF8(drive.text())) throw MoveRefused("The path of the drive isn’t UTF-8: " + drive.text());
  for (const Source& source : sources) {
    if (Text::lowercased(source.name) == BackupStore::recordFile)
      throw MoveRefused("The record of the backup has that name: " + source.place.text());
  }
}

/// Copies each source into the folder of the backup, and counts. What had to make room is told of when no
/// name changes any more, or nothing more can be done.
void copyAll(Platform& platform, const std::vector<Source>& sources, const ChosenVolume& volume,
             BackupRecord& record, const Warn& warn) {
  SetAside setAside;
  const auto tell = [&] {
    for (const std::string& sentence : setAside.sentences()) warn(sentence);
  };
  const Path root(record.rootPath);
  try {
    for (const Source& source : sources) {
      volume.requireHolds(platform, root);
      const BackupCopy copy(platform, root.appending(source.name), setAside);
      copy.make(source.place);
      copy.sanitizeNames();
      record.sourceFileCount += source.contents.fileCount;
      record.backupFileCount += BackupContents::of(platform, root.appending(source.name)).fileCount;
    }
  } catch (...) {
    tell();
    throw;
  }
  tell();
}

}  // namespace

BackupRecord create(Platform& platform, const std::vector<Path>& paths, const Path& drive, const Warn& warn) {
  const Path backups = BackupStore::root(drive);
  const ChosenVolume volume = ChosenVolume::ofDrive(platform, drive);
  requireOnDrive(platform, backups, drive);
  auto sources = existing(platform, paths);
  requireNames(drive, sources);
  for (Source& source : sources) {
    requireOutside(platform, source.place, backups);
    MountPoints::refuseBelow(platform, source.place);
    source.contents = BackupContents::of(platform, source.place);
    if (source.contents.uncopyable) throw MoveRefused::notCopyable(*source.contents.uncopyable);
  }
  const std::string id = TimedFolder::make(platform, backups).orThrow();
  const Path root = backups.appending(id);
  BackupRecord record{.id = id, .rootPath = root.text(), .createdAt = platform.clock.now()};
  copyAll(platform, sources, volume, record, warn);
  // A record that is there tells of copies that are there, even after a power cut.
  platform.files.flush(root).orThrow();
  BackupStore::save(platform, record);
  platform.files.flush(root).orThrow();
  return record;
}

std::vector<BackupRecord> list(const ReadOnlyPlatform& platform, const Path& drive) {
  return BackupStore::list(platform, drive);
}

}  // namespace quarn::BackupService
