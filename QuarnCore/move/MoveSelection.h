#pragma once

#include <vector>

#include "Platform/Platform.h"
#include "QuarnCore/discovery/AppEntry.h"

/// Which applications a run that names none may move.
namespace quarn::MoveSelection {

/// What is taken along that would stay otherwise.
struct Choices {
  bool includesProtected = false;
  bool includesRisky = false;
  bool includesRunning = false;
};

/// All applications but this tool itself and, unless they are chosen, the protected, the risky and the
/// running ones; by name, with sizes.
std::vector<AppEntry> eligibleApps(const ReadOnlyPlatform& platform, const Choices& choices);

/// It has a system extension, a store receipt or a login item, any of which a move may break.
bool isRisky(const AppEntry& entry);

/// On the list of tools that people work in; or named after one of which some process runs.
bool isProtectedLiveTool(const ReadOnlyPlatform& platform, const AppEntry& entry);

}  // namespace quarn::MoveSelection
