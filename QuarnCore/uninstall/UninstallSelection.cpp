#include "QuarnCore/uninstall/UninstallSelection.h"

namespace quarn {

UninstallSwitch switchOf(UninstallCategory category) {
  switch (category) {
    case UninstallCategory::executable:
    case UninstallCategory::installerSession:
      return nullptr;
    case UninstallCategory::applicationSupport:
    case UninstallCategory::httpStorages:
    case UninstallCategory::webKit:
    case UninstallCategory::savedAppState:
      return &UninstallSelection::includeData;
    case UninstallCategory::caches:
      return &UninstallSelection::includeCaches;
    case UninstallCategory::preferences:
      return &UninstallSelection::includePrefs;
    case UninstallCategory::logs:
      return &UninstallSelection::includeLogs;
    case UninstallCategory::containers:
    case UninstallCategory::groupContainers:
      return &UninstallSelection::includeContainers;
    case UninstallCategory::launchAgents:
      return &UninstallSelection::includeLaunchAgents;
    case UninstallCategory::launchDaemons:
      return &UninstallSelection::includeLaunchDaemons;
    case UninstallCategory::receipts:
      return &UninstallSelection::includeReceipts;
  }
  return nullptr;
}

UninstallSelection UninstallSelection::everything() {
  return {.includeData = true,
          .includeCaches = true,
          .includeLogs = true,
          .includePrefs = true,
          .includeContainers = true,
          .includeLaunchAgents = true};
}

bool UninstallSelection::allows(UninstallCategory category) const {
  const UninstallSwitch governing = switchOf(category);
  return !governing || this->*governing;
}

}  // namespace quarn
