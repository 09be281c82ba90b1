#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Platform/Clock.h"
#include "QuarnCore/uninstall/AppRecord.h"
#include "QuarnCore/uninstall/UninstallCandidate.h"

namespace quarn {

/// The record of one uninstall.
struct AppUninstallSession {
  /// An item that was to go. Sizes are in bytes.
  struct MovedItem {
    std::string originalPath;
    UninstallCategory category = UninstallCategory::executable;
    std::int64_t sizeBytes = 0;
    std::optional<std::string> trashedTo;  ///< where it is in the Trash, if the system said so
    /// The folder beside the item into which it was to go after the Trash had refused it.
    std::optional<std::string> stashedTo;
    bool succeeded = false;            ///< nothing is left at the original path
    std::optional<std::string> error;  ///< a sentence

    /// Returns the item of a candidate, before anything was done.
    static MovedItem of(const UninstallCandidate& candidate);
    bool operator==(const MovedItem&) const = default;
  };

  std::string id;  ///< when it was carried out, in local time; also the name of its folder
  std::string appPath;
  std::string appName;
  std::optional<std::string> bundleIdentifier;
  Moment createdAt;
  std::vector<MovedItem> movedItems;           ///< in the order of the plan
  std::vector<std::string> forgottenReceipts;  ///< package identifiers
  bool dryRun = false;

  /// Returns the record of an uninstall in which nothing was done yet.
  static AppUninstallSession begun(const AppRecord& app, const std::string& id, Moment now, bool dryRun);
  bool operator==(const AppUninstallSession&) const = default;
};

}  // namespace quarn
