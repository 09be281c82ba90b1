#pragma once

#include <vector>

#include "Platform/Platform.h"
#include "QuarnCore/uninstall/AppRecord.h"
#include "QuarnCore/uninstall/UninstallCandidate.h"

namespace quarn::HomeLibraryFiles {

/// Returns what an application has in the user's library and, under its slug, directly in the home folder.
/// The sizes aren't measured yet.
std::vector<UninstallCandidate> candidates(const ReadOnlyPlatform& platform, const AppRecord& record);

}  // namespace quarn::HomeLibraryFiles
