#pragma once

#include <vector>

#include "Platform/Platform.h"
#include "QuarnCLI/CLIArgs.h"
#include "QuarnCore/discovery/AppEntry.h"

/// Which applications a command that names none may move.
namespace quarn::MoveSelection {

/// All applications but this tool itself and, unless a flag includes them, the protected, the risky and
/// the running ones; by name, with sizes.
std::vector<AppEntry> eligibleApps(const ReadOnlyPlatform& platform, const CLIArgs& args);

/// On the list of tools that people work in; or named after one of which some process runs.
bool isProtectedLiveTool(const ReadOnlyPlatform& platform, const AppEntry& entry);

}  // namespace quarn::MoveSelection
