#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Platform/Platform.h"
#include "QuarnCore/installer/InstallerOption.h"

/// The install options: those that come with the program, and the user's own, which add to them or replace
/// them. Nothing here throws: a folder that is missing holds no option, and a file that can't be read or
/// decoded is passed over.
namespace quarn::InstallerOptionLoader {

/// Sorted by label; options of one label in no promised order. Of several files with one `id` the last one
/// counts as a whole: the user's before the shipped ones, and within a folder, subfolders included, by path.
std::vector<InstallerOption> loadAll(const ReadOnlyPlatform& platform, const Path& userRoot);

/// From the user's folder and the shipped one; nothing for an unknown `id`.
std::optional<InstallerOption> find(const ReadOnlyPlatform& platform, const std::string& id);

}  // namespace quarn::InstallerOptionLoader
