#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Platform/Platform.h"

namespace quarn {

/// A moved item as it is recorded.
struct HealthManifestEntry {
  std::string sourcePath;       ///< standardized; the path of the link; unique in the file
  std::string destinationPath;  ///< standardized
  std::optional<std::string> bundleIdentifier;
  std::int64_t sizeBytes = 0;
  Moment movedAt;
  bool operator==(const HealthManifestEntry&) const = default;
};

/// The record of what this tool has moved, a JSON file in its support folder. It is only a convenience: no
/// operation throws or keeps state, and a file that can't be read counts as empty.
namespace HealthManifest {

inline constexpr const char* filename = "health-manifest.json";

Path fileURL(const Places& places);
/// Returns the entries in the order of the file. One malformed entry makes the whole file count as empty.
std::vector<HealthManifestEntry> load(const ReadOnlyPlatform& platform);
/// Adds an entry at the end and removes any other with the same source. Overwrites a corrupt file.
void record(Platform& platform, const HealthManifestEntry& entry);
/// Removes the entry of a source. Writes the file only if there was one; after the last entry an empty list
/// remains.
void forget(Platform& platform, const std::string& sourcePath);

}  // namespace HealthManifest
}  // namespace quarn
