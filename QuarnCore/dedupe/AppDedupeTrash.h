#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Platform/Platform.h"
#include "QuarnCore/dedupe/AppDedupePlan.h"

namespace quarn {

/// Takes the launchers of a plan to the Trash. It remembers which bundle each path led to before the first
/// one went: a linked folder shows a bundle at a second path, and after it went by the first one nothing is
/// wrong with the second.
class AppDedupeTrash {
 public:
  AppDedupeTrash(Platform& platform, const AppDedupePlan& plan);

  /// Tells what became of an item; never throws.
  AppUninstallSession::MovedItem take(const AppDedupeItem& item, const AppDedupeItem& keep);

 private:
  using Identity = std::pair<std::int32_t, std::uint64_t>;
  using MovedItem = AppUninstallSession::MovedItem;

  /// Remembers which bundles the paths lead to that couldn't be looked at before.
  void look();
  std::optional<Identity> identityAt(const std::string& path) const;
  /// Returns what became of the item by another path; nothing if there is none, or something else is there.
  const MovedItem* outcomeByAnotherPath(const std::string& path) const;
  void moveToTrash(const AppDedupeItem& item, const AppDedupeItem& keep, MovedItem& outcome) const;

  Platform& platform_;
  std::vector<std::string> unseen_;        ///< paths
  std::map<std::string, Identity> found_;  ///< by path
  std::map<Identity, MovedItem> outcomes_;
};

}  // namespace quarn
