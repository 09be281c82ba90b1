#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Platform/Platform.h"
#include "QuarnCore/installer/InstallerOption.h"

/// The install options: those that come with the program, and the user's own, which add to them or replace
/// them. Nothing here throws: a missing folder holds no options, and a file that can't be read or decoded is
/// skipped.
namespace quarn::InstallerOptionLoader {

/// Returns all options sorted by label; options with the same label are in no particular order. If several
/// files have the same `id`, the last one replaces the others completely: the user's files come after the
/// shipped ones, and within a folder (with its subfolders) files are in the order of their paths.
std::vector<InstallerOption> loadAll(const ReadOnlyPlatform& platform, const Path& userRoot);

/// Looks in the user's folder and in the shipped one. Returns nothing for an unknown `id`.
std::optional<InstallerOption> find(const ReadOnlyPlatform& platform, const std::string& id);

}  // namespace quarn::InstallerOptionLoader
