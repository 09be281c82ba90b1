#include "QuarnCore/uninstall/AppUninstallSession.h"

namespace quarn {

AppUninstallSession::MovedItem AppUninstallSession::MovedItem::of(const UninstallCandidate& candidate) {
  return {.originalPath = candidate.path,
          .category = candidate.category,
          .sizeBytes = candidate.sizeBytes,
          .trashedTo = std::nullopt,
          .stashedTo = std::nullopt,
          .succeeded = false,
          .error = std::nullopt};
}

AppUninstallSession AppUninstallSession::begun(const AppRecord& app, const std::string& id, Moment now,
                                               bool dryRun) {
  return {.id = id,
          .appPath = app.bundlePath,
          .appName = app.displayName,
          .bundleIdentifier = app.bundleIdentifier,
          .createdAt = now,
          .movedItems = {},
          .forgottenReceipts = {},
          .dryRun = dryRun};
}

}  // namespace quarn
