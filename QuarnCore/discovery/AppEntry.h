#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Platform/Path.h"
#include "QuarnCore/discovery/DataPathCategory.h"
#include "QuarnCore/foundation/RawValues.h"

namespace quarn {

/// How likely it is that moving breaks the application.
enum class RiskLevel { low, medium, high };

template <>
inline constexpr auto rawValueRows<RiskLevel> = std::to_array<RawValueRow<RiskLevel>>({
    {RiskLevel::low, "low"},
    {RiskLevel::medium, "medium"},
    {RiskLevel::high, "high"},
});

/// An installed application bundle as it was found. Sizes are in bytes, and 0 until they have been measured.
struct AppEntry {
  std::string id;    ///< the bundle identifier, or the path of the bundle if it has none
  std::string name;  ///< the name for people
  Path bundlePath;   ///< as found, even if it is a launcher or a link
  std::optional<std::string> bundleIdentifier;
  std::optional<std::string> version;
  std::int64_t appSize = 0;
  std::vector<Path> dataPaths;
  std::int64_t dataSize = 0;
  std::vector<DataPathSize> dataPathSizes;  ///< empty until measured
  bool isMacAppStore = false;
  bool hasLoginItems = false;
  bool hasSystemExtension = false;
  bool isAlreadySymlinked = false;  ///< it is a launcher whose target exists, or a link, or inside one

  std::int64_t totalSize() const { return appSize + dataSize; }
  RiskLevel riskLevel() const;
  /// Returns sentences for people, in a fixed order.
  std::vector<std::string> warnings() const;
  /// Returns the measured size of the data path at this index, or nothing if it hasn't been measured.
  std::optional<std::int64_t> sizeOfDataPath(std::size_t number) const;
  /// Returns the largest data path, and the first one if several are equal.
  std::optional<DataPathSize> dominantDataPath() const;
  /// Returns the groups in the display order of their categories, and each group's items from the largest
  /// down.
  std::vector<CategorizedPaths> categorizedPaths() const;
  AppEntry withDisplayName(std::string displayName) const;

  bool operator==(const AppEntry&) const = default;
};

}  // namespace quarn
