#pragma once

#include <set>
#include <vector>

#include "Platform/Platform.h"
#include "QuarnCore/plugins/InstalledPlugin.h"

/// Lists what stands in the system's folders of plug-ins.
namespace quarn::PluginCatalogScanner {

/// Returns every item with the extension of any format in the folders of these formats, by format and name.
/// Skips a folder that can't be listed; never throws. A relative text in a link is looked up from the current
/// folder, and not, as the system does, from that of the link.
std::vector<InstalledPlugin> scan(const ReadOnlyPlatform& platform, const std::set<PluginFormat>& formats);

}  // namespace quarn::PluginCatalogScanner
