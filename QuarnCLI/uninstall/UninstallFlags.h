#pragma once

#include "QuarnCLI/Command.h"
#include "QuarnCLI/FlagNames.h"
#include "QuarnCore/uninstall/UninstallSelection.h"

/// The flags of the group "uninstall". Naming one kind of files leaves out all that aren't named.
namespace quarn::UninstallFlags {

inline constexpr Flag includeData{.name = "--include-data", .meaning = "takes the data folders"};
inline constexpr Flag includeCaches{.name = "--include-caches", .meaning = "takes the caches"};
inline constexpr Flag includeLogs{.name = "--include-logs", .meaning = "takes the logs"};
inline constexpr Flag includePrefs{.name = "--include-prefs", .meaning = "takes the preferences"};
inline constexpr Flag includeContainers{.name = "--include-containers", .meaning = "takes the containers"};
inline constexpr Flag includeReceipts{
    .name = "--include-receipts",
    .meaning = "takes nothing: receipts are only shown",
};
inline constexpr Flag includeLaunchAgents{
    .name = "--include-launch-agents",
    .meaning = "takes the launch agents",
};
inline constexpr Flag includeLaunchDaemons{
    .name = "--include-launch-daemons",
    .meaning = "takes nothing: launch daemons are only shown",
};
inline constexpr Flag includeExternalTarget{
    .name = "--include-external-target",
    .meaning = "takes what the application's link or launcher leads to",
};
/// A flag and the switch that it turns on.
struct Include {
  const Flag* flag;
  UninstallSwitch governed;
};
inline constexpr Include includes[] = {
    {&includeData, &UninstallSelection::includeData},
    {&includeCaches, &UninstallSelection::includeCaches},
    {&includeLogs, &UninstallSelection::includeLogs},
    {&includePrefs, &UninstallSelection::includePrefs},
    {&includeContainers, &UninstallSelection::includeContainers},
    {&includeReceipts, &UninstallSelection::includeReceipts},
    {&includeLaunchAgents, &UninstallSelection::includeLaunchAgents},
    {&includeLaunchDaemons, &UninstallSelection::includeLaunchDaemons},
    {&includeExternalTarget, &UninstallSelection::includeExternalTarget},
};

inline constexpr Flag executableOnly{
    .name = "--executable-only",
    .meaning = "takes the application alone",
};
inline constexpr Flag minimal{.name = "--minimal", .meaning = "the same as --executable-only"};
inline constexpr Flag dryRun{.name = FlagNames::dryRun, .meaning = "changes nothing"};
inline constexpr Flag progress{.name = FlagNames::progress, .meaning = "tells each step on standard error"};
inline constexpr Flag verbose{.name = FlagNames::verbose, .meaning = "the same as --progress"};

}  // namespace quarn::UninstallFlags
