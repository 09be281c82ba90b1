#pragma once

#include <string>
#include <vector>

#include "Platform/Platform.h"
#include "QuarnCore/uninstall/AppUninstallReporter.h"
#include "QuarnCore/uninstall/UninstallObstacles.h"

namespace quarn {

/// Takes what was chosen of a plan away, item by item, and records it.
class UninstallRemoval {
 public:
  using Candidates = std::vector<UninstallCandidate>;

  UninstallRemoval(Platform& platform, const AppRecord& app, const Candidates& chosen,
                   const AppUninstallReporter& reporter);

  /// Returns the record. Throws if it can't be written in the end.
  AppUninstallSession carryOut();

 private:
  using MovedItem = AppUninstallSession::MovedItem;

  void remove(const UninstallCandidate& candidate);
  void stash(MovedItem& item);
  bool isGone(const Path& path) const;
  void forget(const std::string& packageID);
  void record() const;
  void recordSoFar() const;
  void writeOut() const;

  Platform& platform_;
  const Candidates& chosen_;
  const AppUninstallReporter& reporter_;
  UninstallObstacles obstacles_;
  Path root_;
  AppUninstallSession session_;
};

}  // namespace quarn
