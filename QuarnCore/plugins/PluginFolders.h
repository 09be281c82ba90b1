#pragma once

#include <string>
#include <vector>

#include "Platform/Platform.h"
#include "QuarnCore/plugins/PluginFormat.h"

/// The system's folders of plug-ins, one for each format. Only looks, and never throws.
namespace quarn::PluginFolders {

/// Returns the names in the folder of a format, hidden ones included. The folder may be a link.
Result<std::vector<std::string>> names(const ReadOnlyPlatform& platform, PluginFormat format);

/// Returns whether a path is that of an item directly in one of the folders.
bool hold(const Path& systemPath);

/// Returns whether any link in the folders, beside the one at `but`, leads to a folder or into it. Returns
/// true if that can't be told.
bool mayLeadTo(const ReadOnlyPlatform& platform, const Path& folder, const Path& but);

}  // namespace quarn::PluginFolders
