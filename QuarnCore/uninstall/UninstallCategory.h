#pragma once

#include <string_view>

#include "QuarnCore/foundation/RawValues.h"

namespace quarn {

/// What an item is to an application, in the order in which reports show it.
enum class UninstallCategory {
  executable,
  applicationSupport,
  caches,
  preferences,
  logs,
  containers,
  groupContainers,
  httpStorages,
  webKit,
  savedAppState,
  launchAgents,
  launchDaemons,
  receipts,
  installerSession,
};

struct UninstallCategoryRow {
  UninstallCategory value;
  std::string_view rawValue;
  std::string_view label;
  bool defaultSelected;  ///< whether a plain uninstall takes an item that was found by a name alone
};

template <>
inline constexpr auto rawValueRows<UninstallCategory> = std::to_array<UninstallCategoryRow>({
    {UninstallCategory::executable, "executable", "Executables", true},
    {UninstallCategory::applicationSupport, "applicationSupport", "Application Support", true},
    {UninstallCategory::caches, "caches", "Caches", true},
    {UninstallCategory::preferences, "preferences", "Preferences", true},
    {UninstallCategory::logs, "logs", "Logs", true},
    {UninstallCategory::containers, "containers", "Containers", true},
    {UninstallCategory::groupContainers, "groupContainers", "Group Containers", true},
    {UninstallCategory::httpStorages, "httpStorages", "HTTP Storages", true},
    {UninstallCategory::webKit, "webKit", "WebKit", true},
    {UninstallCategory::savedAppState, "savedAppState", "Saved App State", true},
    {UninstallCategory::launchAgents, "launchAgents", "Launch Agents", true},
    {UninstallCategory::launchDaemons, "launchDaemons", "Launch Daemons", false},
    {UninstallCategory::receipts, "receipts", "Receipts", false},
    {UninstallCategory::installerSession, "installerSession", "Installer Session", true},
});

}  // namespace quarn
