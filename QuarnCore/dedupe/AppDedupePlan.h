#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Platform/Clock.h"
#include "QuarnCore/foundation/RawValues.h"
#include "QuarnCore/uninstall/AppUninstallSession.h"

namespace quarn {

enum class AppDedupeItemKind {
  realApp,
  quarnLauncher,
  symlink,  ///< a link that doesn't lead to a launcher
};

template <>
inline constexpr auto rawValueRows<AppDedupeItemKind> = std::to_array<RawValueRow<AppDedupeItemKind>>({
    {AppDedupeItemKind::realApp, "realApp"},
    {AppDedupeItemKind::quarnLauncher, "quarnLauncher"},
    {AppDedupeItemKind::symlink, "symlink"},
});

/// A bundle in a folder of applications.
struct AppDedupeItem {
  std::string path;
  std::string displayName;
  std::string bundleIdentifier;           ///< as found
  std::string effectiveBundleIdentifier;  ///< without the suffix of launchers
  AppDedupeItemKind kind = AppDedupeItemKind::realApp;
  /// The path that a launcher records, perhaps of nothing; absent for a link, wherever it leads.
  std::optional<std::string> targetPath{};
  bool insideSymlinkedFolder = false;
  std::int64_t sizeBytes = 0;  ///< 0 until it was measured

  /// Returns the record of its removal, before anything was done.
  AppUninstallSession::MovedItem removal() const;

  bool operator==(const AppDedupeItem&) const = default;
};

/// Bundles with one effective identifier, some of which are duplicates.
struct AppDedupeGroup {
  std::string bundleIdentifier;  ///< the effective one
  std::string displayName;
  AppDedupeItem keep;
  std::vector<AppDedupeItem> remove{};  ///< by path
  std::vector<AppDedupeItem> items;     ///< all of them, by path
  std::string reason;                   ///< a sentence

  bool operator==(const AppDedupeGroup&) const = default;
};

struct AppDedupePlan {
  std::vector<AppDedupeGroup> groups;  ///< by name
  Moment scannedAt{};

  /// Returns what is to go, group by group.
  std::vector<AppDedupeItem> removableItems() const;
  std::int64_t removableBytes() const;

  bool operator==(const AppDedupePlan&) const = default;
};

struct AppDedupeRunResult {
  AppDedupePlan plan;
  bool dryRun = false;
  /// One for each removable item, in their order.
  std::vector<AppUninstallSession::MovedItem> movedItems{};

  bool operator==(const AppDedupeRunResult&) const = default;
};

}  // namespace quarn
