#pragma once

#include "QuarnCore/uninstall/UninstallCategory.h"

namespace quarn {

/// What an uninstall takes beside the application itself. A switch turns a category on, not each item of it:
/// what isn't selected by default stays.
struct UninstallSelection {
  bool includeData = false;
  bool includeCaches = false;
  bool includeLogs = false;
  bool includePrefs = false;
  bool includeContainers = false;
  bool includeReceipts = false;
  bool includeLaunchAgents = false;
  bool includeLaunchDaemons = false;
  bool includeExternalTarget = false;

  /// Everything in the user's own library. Receipts, launch daemons and the copy on a drive reach beyond it.
  static UninstallSelection everything();
  static UninstallSelection executableOnly() { return {}; }

  /// Returns whether a category is on. The application itself and records of installations always are.
  bool allows(UninstallCategory category) const;

  bool operator==(const UninstallSelection&) const = default;
};

/// A switch of a selection.
using UninstallSwitch = bool UninstallSelection::*;

/// Returns the switch that governs a category; a null pointer for those that are always on.
UninstallSwitch switchOf(UninstallCategory category);

}  // namespace quarn
