#pragma once

#include <optional>
#include <string>
#include <vector>

#include "QuarnCore/uninstall/UninstallCandidateGuard.h"

namespace quarn {

/// Tells what keeps a candidate where it is, right before it is to go. It only looks.
class UninstallObstacles {
 public:
  /// `chosen` is all that is to go with the application.
  UninstallObstacles(const ReadOnlyPlatform& platform, const AppRecord& app,
                     const std::vector<UninstallCandidate>& chosen);

  /// Returns why a candidate has to stay, as a sentence; nothing if it may go. It stays if
  /// `UninstallCandidateGuard` doesn't allow it, if its drive isn't mounted any more, if a volume is mounted
  /// inside, which would go with it, and if the copy to which the application leads is inside and isn't
  /// chosen.
  std::optional<std::string> reasonToStay(const UninstallCandidate& candidate) const;

 private:
  ReadOnlyPlatform platform_;
  const AppRecord& app_;
  UninstallCandidateGuard guard_;
  std::optional<Sighting> stayingTarget_;
};

}  // namespace quarn
