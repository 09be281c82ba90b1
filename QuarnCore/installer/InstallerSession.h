#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Platform/Clock.h"
#include "QuarnCore/foundation/RawValues.h"

namespace quarn {

enum class InstallerSessionStatus {
  pendingExternalize,  ///< installed, and some applications have still to go to the drive
  done,
  failed,
};

template <>
inline constexpr auto rawValueRows<InstallerSessionStatus> =
    std::to_array<RawValueRow<InstallerSessionStatus>>({
        {InstallerSessionStatus::pendingExternalize, "pendingExternalize"},
        {InstallerSessionStatus::done, "done"},
        {InstallerSessionStatus::failed, "failed"},
    });

/// The record of one installation.
struct InstallerSession {
  std::string id;          ///< when the installation began; also the name of the session's folder
  std::string sourcePath;  ///< as it was given
  std::string optionID;
  Moment createdAt;
  std::vector<std::string> actions;       ///< lines of `InstallAction`
  std::vector<std::string> changedPaths;  ///< sorted
  std::vector<std::string> newReceipts;   ///< package identifiers, sorted
  InstallerSessionStatus status = InstallerSessionStatus::done;
  std::string targetDrivePath;  ///< empty in sessions of early versions
  /// Applications that were not yet known to be on the drive when the session was written.
  std::vector<std::string> pendingExternalizeApps;

  /// Returns a copy with another status, and with other actions and pending applications where some are
  /// given.
  InstallerSession with(InstallerSessionStatus newStatus,
                        std::optional<std::vector<std::string>> newActions = std::nullopt,
                        std::optional<std::vector<std::string>> newPendingApps = std::nullopt) const;
  bool operator==(const InstallerSession&) const = default;
};

}  // namespace quarn
