#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Path.h"

namespace quarn {

/// What kind of data lies at a path.
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

namespace DataPathCategories {

const std::vector<DataPathCategory>& allCases();
std::string_view label(DataPathCategory category);
/// The sort key of a display.
int displayOrder(DataPathCategory category);
/// By the text of the path alone; the disk isn't asked.
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
  /// "1 item", "2 items".
  std::string fileFolderSummary() const;
  bool operator==(const CategorizedPaths&) const = default;
};

}  // namespace quarn
