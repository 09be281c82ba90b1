#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Path.h"

namespace quarn {

/// The paths in the library folders where applications keep data. These functions are pure: they don't check
/// what exists.
namespace LibraryDataPaths {
std::vector<Path> byBundleId(const Path& home, const std::optional<std::string>& bundleId);
std::vector<Path> byDisplayName(const Path& home, const std::string& name);
std::vector<Path> systemByBundleId(const std::optional<std::string>& bundleId);
std::vector<Path> systemByDisplayName(const std::string& name);
/// For an application that lies in a support folder. That folder is the application itself, so it isn't
/// included.
std::vector<Path> supplemental(const Path& home, const std::string& name);
}  // namespace LibraryDataPaths

/// Collects the paths of items that belong to an application. Skips a name that doesn't name one item in its
/// folder: an empty one, ".", "..", or one with a slash. Names come from a bundle's property list, and such a
/// name would make a whole library folder look like the data of one application.
class OwnItems {
 public:
  void add(const Path& folder, std::string_view name);

  std::vector<Path> paths;
};

}  // namespace quarn
