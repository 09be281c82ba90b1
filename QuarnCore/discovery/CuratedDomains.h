#pragma once

#include <optional>
#include <string>
#include <vector>

namespace quarn {

/// What is known of one application's data beyond the general rules.
struct OwnedPaths {
  bool excludesDotfileAndNodeCaches = false;
  std::vector<std::string> extraPaths;  ///< absolute
  bool operator==(const OwnedPaths&) const = default;
};

namespace CuratedDomains {

/// By bundle identifier, letter case aside; nothing for an unknown one.
std::optional<OwnedPaths> entry(const std::optional<std::string>& bundleIdentifier);

}  // namespace CuratedDomains
}  // namespace quarn
