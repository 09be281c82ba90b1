#include "QuarnCore/uninstall/UninstallSessionStore.h"

#include <algorithm>

#include "Platform/CocoaError.h"
#include "Platform/Text.h"
#include "QuarnCore/foundation/EntryName.h"
#include "QuarnCore/foundation/StoredJson.h"

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

constexpr const char* sessionFile = "session.json";

}  // namespace

void save(Platform& platform, const AppUninstallSession& session, const Path& root) {
  const Path folder = root.appending(session.id);
  if (!EntryName::isOne(session.id))
    throw CocoaError::fromCode(CocoaError::Operation::save, CocoaErrorCode::fileWriteInvalidFileName, folder);
  // What a link leads to is somebody else's.
  if (platform.files.isSymbolicLink(folder))
    throw CocoaError::fromCode(CocoaError::Operation::save, CocoaErrorCode::fileWriteFileExists, folder);
  platform.files.createFolder(folder).orThrow();
  const std::string text =
      StoredJson::write(session, StoredJson::Layout::pretty, DateForm::secondsSince2001).orThrow();
  platform.files.writeAtomically(folder.appending(sessionFile), text).orThrow();
}

std::vector<AppUninstallSession> list(const ReadOnlyPlatform& platform, const Path& root) {
  auto names = platform.files.list(root, Hidden::skipped).valueOr({});
  std::sort(names.begin(), names.end());
  std::vector<AppUninstallSession> sessions;
  for (const std::string& name : names) {
    if (auto session = load(platform, root.appending(name))) sessions.push_back(*std::move(session));
  }
  std::stable_sort(
      sessions.begin(), sessions.end(),
      [](const AppUninstallSession& a, const AppUninstallSession& b) { return a.createdAt > b.createdAt; });
  return sessions;
}

std::optional<AppUninstallSession> load(const ReadOnlyPlatform& platform, const Path& folder) {
  const auto text = platform.files.read(folder.appending(sessionFile));
  if (!text) return std::nullopt;
  auto session = StoredJson::read<AppUninstallSession>(*text, DateForm::secondsSince2001);
  if (!session) return std::nullopt;
  return *std::move(session);
}

std::optional<AppUninstallSession> find(const ReadOnlyPlatform& platform, const std::string& id,
                                        const Path& root) {
  if (!EntryName::isOne(id)) return std::nullopt;
  auto session = load(platform, root.appending(id));
  if (!session || !Text::equal(session->id, id)) return std::nullopt;
  return session;
}

}  // namespace UninstallSessionStore
}  // namespace quarn
