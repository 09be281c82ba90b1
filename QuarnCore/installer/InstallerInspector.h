#pragma once

#include "QuarnCore/foundation/TemporaryFolders.h"
#include "QuarnCore/installer/InstallerInspection.h"
#include "QuarnCore/installer/InstallerSource.h"

/// Looks into a source before anything is planned or installed. Nothing here throws: what can't be looked
/// into is a result with the status "inspect-failed" or "unsupported". An image is attached and detached
/// again, and an archive is expanded into a temporary folder, which is set aside.
namespace quarn {

namespace InstallerInspector {
/// Inspects a source by its kind.
InstallerInspection inspect(const ReadOnlyPlatform& platform, TemporaryFolders& temporaryFolders,
                            const InstallerSource& source);
}  // namespace InstallerInspector

namespace AppSourceInspector {
InstallerInspection inspect(const ReadOnlyPlatform& platform, const InstallerSource& source);
}  // namespace AppSourceInspector

namespace DmgSourceInspector {
InstallerInspection inspect(const ReadOnlyPlatform& platform, const InstallerSource& source);
}  // namespace DmgSourceInspector

namespace ZipSourceInspector {
InstallerInspection inspect(const ReadOnlyPlatform& platform, TemporaryFolders& temporaryFolders,
                            const InstallerSource& source);
}  // namespace ZipSourceInspector

namespace PkgSourceInspector {
InstallerInspection inspect(const ReadOnlyPlatform& platform, const InstallerSource& source);
}  // namespace PkgSourceInspector

namespace ScriptSourceInspector {
InstallerInspection inspect(const ReadOnlyPlatform& platform, const InstallerSource& source);
}  // namespace ScriptSourceInspector

}  // namespace quarn
