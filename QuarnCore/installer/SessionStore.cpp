#include "QuarnCore/installer/SessionStore.h"

#include <algorithm>

#include "Platform/CocoaError.h"
#include "Platform/Text.h"
#include "QuarnCore/foundation/EntryName.h"
#include "QuarnCore/foundation/StoredJson.h"

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

constexpr const char* sessionFile = "session.json";
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
  const std::string text =
      StoredJson::write(session, StoredJson::Layout::compact, DateForm::secondsSince2001).orThrow();
  platform.files.writeAtomically(folder.appending(sessionFile), text).orThrow();
  platform.files.writeAtomically(folder.appending(changedPathsFile), linesOf(session.changedPaths)).orThrow();
}

std::vector<InstallerSession> list(const ReadOnlyPlatform& platform, const Path& root) {
  auto names = platform.files.list(root, Hidden::skipped).valueOr({});
  std::sort(names.begin(), names.end());
  std::vector<InstallerSession> sessions;
  for (const std::string& name : names) {
    if (auto session = load(platform, root.appending(name))) sessions.push_back(*std::move(session));
  }
  std::stable_sort(
      sessions.begin(), sessions.end(),
      [](const InstallerSession& a, const InstallerSession& b) { return a.createdAt > b.createdAt; });
  return sessions;
}

std::optional<InstallerSession> find(const ReadOnlyPlatform& platform, const std::string& id,
                                     const Path& root) {
  if (!EntryName::isOne(id)) return std::nullopt;
  auto session = load(platform, root.appending(id));
  if (!session || !Text::equal(session->id, id)) return std::nullopt;
  return session;
}

std::optional<InstallerSession> load(const ReadOnlyPlatform& platform, const Path& folder) {
  const auto text = platform.files.read(folder.appending(sessionFile));
  if (!text) return std::nullopt;
  auto session = StoredJson::read<InstallerSession>(*text, DateForm::secondsSince2001);
  if (!session) return std::nullopt;
  return *std::move(session);
}

}  // namespace SessionStore
}  // namespace quarn
