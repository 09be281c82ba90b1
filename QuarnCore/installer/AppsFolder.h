#pragma once

#include "Platform/Platform.h"

/// The folder on a drive that holds the copies of applications.
namespace quarn::AppsFolder {

/// Returns its path. The name of the folder around it comes from an option, which anyone may have written.
Path on(const Path& drive, const std::string& externalRootName);

/// Returns whether the folder, after all links, lies on the drive, or will lie there once it exists.
bool isOn(const ReadOnlyPlatform& platform, const Path& appsFolder, const Path& drive);

}  // namespace quarn::AppsFolder
