#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Platform/Platform.h"
#include "QuarnCore/uninstall/AppUninstallSession.h"

/// Keeps the records of uninstalls on the disk: "session.json" in a folder that is named by the identifier.
namespace quarn::UninstallSessionStore {

/// Writes a record, in place of a former one with the same identifier. The file appears whole or not at all.
/// Throws. An identifier that can't name a folder is refused, as is one at which there is a link.
void save(Platform& platform, const AppUninstallSession& session, const Path& root);

/// Returns the records below a folder, newest first. What can't be read as one is left out.
std::vector<AppUninstallSession> list(const ReadOnlyPlatform& platform, const Path& root);

/// Returns the record in a folder.
std::optional<AppUninstallSession> load(const ReadOnlyPlatform& platform, const Path& folder);

/// Returns the record with an identifier. A folder whose record has another one was put there by somebody
/// else, and isn't that record.
std::optional<AppUninstallSession> find(const ReadOnlyPlatform& platform, const std::string& id,
                                        const Path& root);

}  // namespace quarn::UninstallSessionStore
