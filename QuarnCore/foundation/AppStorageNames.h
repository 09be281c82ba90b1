#pragma once

#include <array>
#include <string_view>

#include "Platform/Path.h"
#include "Platform/Places.h"

/// Every folder name of the storage layout. No function here touches the disk.
namespace quarn::AppStorageNames {

inline constexpr std::string_view externalRoot = "ExternalQuarn";
inline constexpr std::string_view apps = "Apps";
inline constexpr std::string_view data = "Data";
inline constexpr std::string_view plugins = "Plugins";
inline constexpr std::string_view folders = "Folders";                ///< reserved
inline constexpr std::string_view installerCache = "InstallerCache";  ///< reserved
/// Beside the root folder on the drive, not inside it.
inline constexpr std::string_view backupsRoot = "QuarnBackups";
inline constexpr std::string_view installerSessions = "InstallerSessions";
inline constexpr std::string_view installerOptions = "InstallerOptions";
inline constexpr std::string_view uninstallSessions = "UninstallSessions";
/// Former names of the root folder.
inline constexpr std::array<std::string_view, 1> legacyExternalRoots = {"Quarn"};

/// Paths on a drive, given its mount point.
Path externalRootPath(const Path& drive);
Path appsRoot(const Path& drive);
Path dataRoot(const Path& drive);
Path pluginsRoot(const Path& drive);
Path foldersRoot(const Path& drive);

/// Paths in the user's home folder.
Path supportRoot(const Places& places);
Path sessionRoot(const Places& places);
Path userInstallerOptionsRoot(const Places& places);
Path uninstallSessionRoot(const Places& places);

}  // namespace quarn::AppStorageNames
