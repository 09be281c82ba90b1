#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Platform/Platform.h"

namespace quarn {

/// One moved item as it is remembered.
struct HealthManifestEntry {
  std::string sourcePath;       ///< standardized; where the link stands; one entry each
  std::string destinationPath;  ///< standardized
  std::optional<std::string> bundleIdentifier;
  std::int64_t sizeBytes = 0;
  Moment movedAt;
  bool operator==(const HealthManifestEntry&) const = default;
};

/// The tool's memory of what it has moved, a JSON file in its support folder. A convenience record: no
/// operation throws, none keeps state, and a file that can't be read counts as empty.
namespace HealthManifest {

inline constexpr const char* filename = "health-manifest.json";

Path fileURL(const Places& places);
/// In file order. One malformed entry makes the whole file count as empty.
std::vector<HealthManifestEntry> load(const ReadOnlyPlatform& platform);
/// Puts an entry at the end, in place of any of the same source. Overwrites a corrupt file.
void record(Platform& platform, const HealthManifestEntry& entry);
/// Writes only if there was such an entry; the last one leaves an empty list.
void forget(Platform& platform, const std::string& sourcePath);

}  // namespace HealthManifest
}  // namespace quarn
