#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Platform/Path.h"

/// Where applications keep data in the library folders. Pure: nothing is tested for existence.
namespace quarn::LibraryDataPaths {

std::vector<Path> byBundleId(const Path& home, const std::optional<std::string>& bundleId);
std::vector<Path> byDisplayName(const Path& home, const std::string& name);
std::vector<Path> systemByBundleId(const std::optional<std::string>& bundleId);
std::vector<Path> systemByDisplayName(const std::string& name);
/// For an application that lives inside a support folder: that folder is the application itself.
std::vector<Path> supplemental(const Path& home, const std::string& name);

}  // namespace quarn::LibraryDataPaths
