#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Platform/Path.h"
#include "QuarnCore/foundation/AppIdentity.h"

namespace quarn {

/// What is known about the data of one application beyond the general rules.
struct OwnedPaths {
  bool excludesDotfileAndNodeCaches = false;
  std::vector<std::string> extraPaths;  ///< absolute
  bool operator==(const OwnedPaths&) const = default;
};

namespace CuratedDomains {

/// Looks up a bundle identifier, ignoring letter case. Returns nothing for an unknown one.
std::optional<OwnedPaths> entry(const std::optional<std::string>& bundleIdentifier);

}  // namespace CuratedDomains

/// Files and folders that a command-line tool leaves in the home folder under its slug.
namespace DotfileEntries {
std::vector<std::string> relativeNames(const std::string& slug);
std::vector<Path> urls(const Path& home, const std::string& slug);
}  // namespace DotfileEntries

/// Cache folders of command-line tools that run on Node.
namespace NodeCliCacheEntries {
std::vector<std::string> folderNames(const std::string& slug);
std::vector<Path> urls(const Path& home, const std::string& slug);
}  // namespace NodeCliCacheEntries

namespace SlugDataPaths {
/// Returns the dotfiles and then the Node caches, without checking what exists.
std::vector<Path> all(const Path& home, const std::string& slug);
}  // namespace SlugDataPaths

namespace SlugDataEligibility {
/// Returns false if the data under this slug belongs to another program of the same name.
bool includesDotfileAndNodeCaches(const AppIdentity& identity);
}  // namespace SlugDataEligibility

}  // namespace quarn
