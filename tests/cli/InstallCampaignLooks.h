#pragma once

#include <optional>
#include <set>
#include <string>

#include "tests/cli/InstallCampaign.h"

/// How the trial of an installation looks at what is there.
namespace installs {

/// Of an image that was left attached.
inline const std::string attachedImage = "/Volumes/Foo";
/// The session that isn't of the job.
inline const std::string foreignSession = "20200101_000000";

/// Empties every place, and sets what is foreign.
void clearScene();
/// The content of every file that is no session.
std::set<std::string> contents();
/// The identifiers of the packages that are installed.
Lines receipts();
/// Those of quarn's among the temporary ones.
Lines temporaryFolders();
std::optional<quarn::InstallerSession> loadSession(const std::string& name);
/// What a launcher opens; nothing if it is none.
std::string launcherTarget(const std::string& bundle);

}  // namespace installs
