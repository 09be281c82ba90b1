#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Path.h"

namespace quarn {

/// Where applications keep data in the library folders. Pure: nothing is tested for existence.
namespace LibraryDataPaths {
std::vector<Path> byBundleId(const Path& home, const std::optional<std::string>& bundleId);
std::vector<Path> byDisplayName(const Path& home, const std::string& name);
std::vector<Path> systemByBundleId(const std::optional<std::string>& bundleId);
std::vector<Path> systemByDisplayName(const std::string& name);
/// For an application that lives inside a support folder: that folder is the application itself.
std::vector<Path> supplemental(const Path& home, const std::string& name);
}  // namespace LibraryDataPaths

/// Gathers the paths of items that belong to an application. Left out are those whose name is no name of
/// one item inside its folder: empty, ".", "..", or with a slash. Names come from a bundle's property
/// list, and such a one would make a whole library folder look like one application's data.
class OwnItems {
 public:
  void add(const Path& folder, std::string_view name);

  std::vector<Path> paths;
};

}  // namespace quarn
