#pragma once

#include <vector>

#include "Platform/Platform.h"
#include "QuarnCore/uninstall/AppRecord.h"
#include "QuarnCore/uninstall/UninstallCandidate.h"

namespace quarn::SystemLibraryFiles {

/// Returns what an application has in the library that all users share, told by its identifier. Only an
/// administrator can remove these. The sizes aren't measured yet.
std::vector<UninstallCandidate> candidates(const ReadOnlyPlatform& platform, const AppRecord& record);

}  // namespace quarn::SystemLibraryFiles
