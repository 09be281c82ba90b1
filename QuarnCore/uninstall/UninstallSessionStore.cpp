#include "QuarnCore/uninstall/UninstallSessionStore.h"

#include "Platform/CocoaError.h"
#include "QuarnCore/foundation/EntryName.h"
#include "QuarnCore/foundation/RecordFolders.h"

namespace quarn {

template <>
inline constexpr auto storedKeys<AppUninstallSession::MovedItem> = std::tuple{
    StoredKey{"originalPath", &AppUninstallSession::MovedItem::originalPath},
    StoredKey{"category", &AppUninstallSession::MovedItem::category},
    StoredKey{"sizeBytes", &AppUninstallSession::MovedItem::sizeBytes},
    StoredKey{"trashedTo", &AppUninstallSession::MovedItem::trashedTo},
    StoredKey{"stashedTo", &AppUninstallSession::MovedItem::stashedTo},
    StoredKey{"succeeded", &AppUninstallSession::MovedItem::succeeded},
    StoredKey{"error", &AppUninstallSession::MovedItem::error},
};

template <>
inline constexpr auto storedKeys<AppUninstallSession> = std::tuple{
    StoredKey{"id", &AppUninstallSession::id},
    StoredKey{"appPath", &AppUninstallSession::appPath},
    StoredKey{"appName", &AppUninstallSession::appName},
    StoredKey{"bundleIdentifier", &AppUninstallSession::bundleIdentifier},
    StoredKey{"createdAt", &AppUninstallSession::createdAt},
    StoredKey{"movedItems", &AppUninstallSession::movedItems},
    StoredKey{"forgottenReceipts", &AppUninstallSession::forgottenReceipts},
    StoredKey{"dryRun", &AppUninstallSession::dryRun},
};

namespace UninstallSessionStore {
namespace {

constexpr RecordFolders<AppUninstallSession> records{"session.json", StoredJson::Layout::pretty};

}  // namespace

void save(Platform& platform, const AppUninstallSession& session, const Path& root) {
  const Path folder = root.appending(session.id);
  if (!EntryName::isOne(session.id))
    throw CocoaError::fromCode(CocoaError::Operation::save, CocoaErrorCode::fileWriteInvalidFileName, folder);
  // What a link leads to is somebody else's.
  if (platform.files.isSymbolicLink(folder))
    throw CocoaError::fromCode(CocoaError::Operation::save, CocoaErrorCode::fileWriteFileExists, folder);
  platform.files.createFolder(folder).orThrow();
  records.save(platform, session, folder);
}

std::vector<AppUninstallSession> list(const ReadOnlyPlatform& platform, const Path& root) {
  return records.newestFirst(platform, root);
}

std::optional<AppUninstallSession> load(const ReadOnlyPlatform& platform, const Path& folder) {
  return records.load(platform, folder);
}

std::optional<AppUninstallSession> find(const ReadOnlyPlatform& platform, const std::string& id,
                                        const Path& root) {
  return records.find(platform, id, root);
}

}  // namespace UninstallSessionStore
}  // namespace quarn
