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

/// How likely a move breaks the application.
enum class RiskLevel { low, medium, high };

template <>
inline constexpr auto rawValueRows<RiskLevel> = std::to_array<RawValueRow<RiskLevel>>({
    {RiskLevel::low, "low"},
    {RiskLevel::medium, "medium"},
    {RiskLevel::high, "high"},
});

/// An installed application bundle as it was found. Sizes are bytes, 0 until they are measured.
struct AppEntry {
  std::string id;    ///< the bundle identifier, or else the bundle path
  std::string name;  ///< what a person calls it
  Path bundlePath;   ///< as found, also when it is a launcher or a link
  std::optional<std::string> bundleIdentifier;
  std::optional<std::string> version;
  std::int64_t appSize = 0;
  std::vector<Path> dataPaths;
  std::int64_t dataSize = 0;
  std::vector<DataPathSize> dataPathSizes;  ///< empty until measured
  bool isMacAppStore = false;
  bool hasLoginItems = false;
  bool hasSystemExtension = false;
  bool isAlreadySymlinked = false;  ///< a launcher with a live target, or a link or inside one

  std::int64_t totalSize() const { return appSize + dataSize; }
  RiskLevel riskLevel() const;
  /// Sentences for people, in a fixed order.
  std::vector<std::string> warnings() const;
  /// Of the data path of that number, as it was measured; nothing if it wasn't.
  std::optional<std::int64_t> sizeOfDataPath(std::size_t number) const;
  /// The largest, the first of equals.
  std::optional<DataPathSize> dominantDataPath() const;
  /// In display order of the categories, the largest item of each first.
  std::vector<CategorizedPaths> categorizedPaths() const;
  AppEntry withDisplayName(std::string displayName) const;

  bool operator==(const AppEntry&) const = default;
};

}  // namespace quarn
