#pragma once

#include <optional>
#include <vector>

#include "Platform/Platform.h"
#include "QuarnCore/installer/InstallerSession.h"

/// Keeps sessions on the disk, each in a folder of its own that is named by its identifier: "session.json",
/// and "changed-paths.tsv" for people and other tools, which nothing here reads.
namespace quarn::SessionStore {

/// Writes both files, in place of those of a former session with the same identifier. Each appears whole or
/// not at all. Throws; if the second file can't be written, the first one has been. An identifier that can't
/// name a folder is refused.
void save(Platform& platform, const InstallerSession& session, const Path& root);

/// Returns the sessions below a folder, newest first. What can't be read as one is left out.
std::vector<InstallerSession> list(const ReadOnlyPlatform& platform, const Path& root);

/// Returns the session with an identifier. A folder whose session has another identifier was put there by
/// somebody else, and isn't that session.
std::optional<InstallerSession> find(const ReadOnlyPlatform& platform, const std::string& id,
                                     const Path& root);

/// Returns the session in a folder.
std::optional<InstallerSession> load(const ReadOnlyPlatform& platform, const Path& folder);

}  // namespace quarn::SessionStore
