#pragma once

#include <memory>
#include <set>
#include <string>
#include <vector>

#include "Platform/Platform.h"
#include "QuarnCore/installer/DiskImageMounter.h"
#include "QuarnCore/plugins/PluginBundle.h"

/// Finds plug-ins in a folder or in a disk image.
namespace quarn::PluginSourceScanner {

struct ScanResult {
  std::vector<PluginBundle> bundles;  ///< by format and name, and bundles of one name by their paths
  /// The image that was attached; absent for a folder. It is detached with the result, and until then its
  /// bundles are there.
  std::unique_ptr<const DiskImageMounter::Attached> mount;
  std::string rootPath;  ///< what was searched: the source, or the first volume of the image
};

/// Finds the bundles of some formats anywhere below a source: folders, and links to folders, with the
/// extension of a format. Skips hidden items with all that is in them, and what lies in a bundle. Follows no
/// link on the way. A source that is missing, that isn't a folder but perhaps a link to one, or that can't be
/// listed has no bundles.
///
/// A source with the extension "dmg" is attached. Throws if that fails or it has no volume, or if somebody
/// else detaches it meanwhile; it is detached then.
ScanResult scan(const ReadOnlyPlatform& platform, const Path& source, const std::set<PluginFormat>& formats);

}  // namespace quarn::PluginSourceScanner
