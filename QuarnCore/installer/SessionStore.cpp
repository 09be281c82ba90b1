#include "QuarnCore/installer/SessionStore.h"

#include "Platform/CocoaError.h"
#include "QuarnCore/foundation/EntryName.h"
#include "QuarnCore/foundation/RecordFolders.h"

namespace quarn {

template <>
inline constexpr auto storedKeys<InstallerSession> = std::tuple{
    StoredKey{"id", &InstallerSession::id},
    StoredKey{"sourcePath", &InstallerSession::sourcePath},
    StoredKey{"optionID", &InstallerSession::optionID},
    StoredKey{"createdAt", &InstallerSession::createdAt},
    StoredKey{"actions", &InstallerSession::actions},
    StoredKey{"changedPaths", &InstallerSession::changedPaths},
    StoredKey{"newReceipts", &InstallerSession::newReceipts},
    StoredKey{"status", &InstallerSession::status, WhenAbsent::keepsDefault},
    StoredKey{"targetDrivePath", &InstallerSession::targetDrivePath, WhenAbsent::keepsDefault},
    StoredKey{"pendingExternalizeApps", &InstallerSession::pendingExternalizeApps, WhenAbsent::keepsDefault},
};

InstallerSession InstallerSession::with(InstallerSessionStatus newStatus,
                                        std::optional<std::vector<std::string>> newActions,
                                        std::optional<std::vector<std::string>> newPendingApps) const {
  InstallerSession changed = *this;
  changed.status = newStatus;
  if (newActions) changed.actions = *std::move(newActions);
  if (newPendingApps) changed.pendingExternalizeApps = *std::move(newPendingApps);
  return changed;
}

namespace SessionStore {
namespace {

constexpr RecordFolders<InstallerSession> records{"session.json", StoredJson::Layout::compact};
constexpr const char* changedPathsFile = "changed-paths.tsv";

std::string linesOf(const std::vector<std::string>& paths) {
  std::string text;
  for (const std::string& path : paths) text += (text.empty() ? "" : "\n") + path;
  return text;
}

}  // namespace

void save(Platform& platform, const InstallerSession& session, const Path& root) {
  if (!EntryName::isOne(session.id))
    throw CocoaError::fromCode(CocoaError::Operation::save, CocoaErrorCode::fileWriteInvalidFileName,
                               root.appending(session.id));
  const Path folder = root.appending(session.id);
  platform.files.createFolder(folder).orThrow();
  records.save(platform, session, folder);
  platform.files.writeAtomically(folder.appending(changedPathsFile), linesOf(session.changedPaths)).orThrow();
}

std::vector<InstallerSession> list(const ReadOnlyPlatform& platform, const Path& root) {
  return records.newestFirst(platform, root);
}

std::optional<InstallerSession> find(const ReadOnlyPlatform& platform, const std::string& id,
                                     const Path& root) {
  return records.find(platform, id, root);
}

std::optional<InstallerSession> load(const ReadOnlyPlatform& platform, const Path& folder) {
  return records.load(platform, folder);
}

}  // namespace SessionStore
}  // namespace quarn
