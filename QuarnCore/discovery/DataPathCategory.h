#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Path.h"
#include "QuarnCore/foundation/RawValues.h"

namespace quarn {

/// The kind of data at a path.
enum class DataPathCategory {
  applicationSupport,
  caches,
  preferences,
  logs,
  httpStorages,
  savedState,
  containers,
  groupContainers,
  applicationScripts,
  launchAgents,
  launchDaemons,
  webKit,
  cookies,
  dockIcon,
  other,
};

struct DataPathCategoryRow {
  DataPathCategory value;
  std::string_view rawValue;  ///< the text for people
  int displayOrder;           ///< the sort key for display
};

template <>
inline constexpr auto rawValueRows<DataPathCategory> = std::to_array<DataPathCategoryRow>({
    {DataPathCategory::applicationSupport, "Application Support", 0},
    {DataPathCategory::caches, "Caches", 3},
    {DataPathCategory::preferences, "Preferences", 7},
    {DataPathCategory::logs, "Logs", 8},
    {DataPathCategory::httpStorages, "HTTPStorages", 4},
    {DataPathCategory::savedState, "Saved State", 6},
    {DataPathCategory::containers, "Containers", 1},
    {DataPathCategory::groupContainers, "Group Containers", 2},
    {DataPathCategory::applicationScripts, "Application Scripts", 10},
    {DataPathCategory::launchAgents, "Launch Agents", 11},
    {DataPathCategory::launchDaemons, "Launch Daemons", 12},
    {DataPathCategory::webKit, "WebKit", 5},
    {DataPathCategory::cookies, "Cookies", 9},
    {DataPathCategory::dockIcon, "Dock Icon", 13},
    {DataPathCategory::other, "Other", 99},
});

namespace DataPathCategories {

constexpr auto allCases() {
  return quarn::allCases<DataPathCategory>();
}
constexpr std::string_view label(DataPathCategory category) {
  return rawValue(category);
}
constexpr int displayOrder(DataPathCategory category) {
  return rowOf(category).displayOrder;
}
/// Classifies a path by its text, without touching the disk.
DataPathCategory classify(const Path& path);

}  // namespace DataPathCategories

/// A data path and its size in bytes.
struct DataPathSize {
  Path url;
  std::int64_t size = 0;
  bool operator==(const DataPathSize&) const = default;
};

/// The data paths of one category.
struct CategorizedPaths {
  DataPathCategory category = DataPathCategory::other;
  std::vector<DataPathSize> items;

  std::int64_t total() const;
  /// Returns a text such as "1 item" or "2 items".
  std::string fileFolderSummary() const;
  bool operator==(const CategorizedPaths&) const = default;
};

}  // namespace quarn
