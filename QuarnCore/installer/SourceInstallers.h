#pragma once

#include <string>
#include <vector>

#include "QuarnCore/foundation/InstallerRunReporter.h"
#include "QuarnCore/foundation/TemporaryFolders.h"
#include "QuarnCore/installer/InstallerOption.h"

/// One installer for each kind of source. Each returns the actions that a session keeps, and throws what went
/// wrong, after an image has been detached or the folder of an archive set aside. What a container holds goes
/// the same road as a source by itself, so nothing escapes the block on what isn't trusted.
namespace quarn {

/// How to install.
struct InstallRequest {
  InstallerOption option;
  Path targetDrive;
  bool useGantrix = false;
  InstallerRunReporter reporter = {};
};

using InstallActions = std::vector<std::string>;

namespace SourceInstaller {
/// Installs from an item by its kind. Throws an error of the domain "install" with code 1 for an unknown
/// kind and for what is neither a file nor a folder, and `fileReadInvalidFileName` for a name that isn't
/// text, which no session could record.
InstallActions install(Platform& platform, const Path& source, const InstallRequest& request);
}  // namespace SourceInstaller

namespace AppSourceInstaller {
InstallActions install(Platform& platform, const Path& source, const InstallRequest& request);
}  // namespace AppSourceInstaller

namespace DmgSourceInstaller {
/// The first item that fails ends it. An image without items is no error.
InstallActions install(Platform& platform, const Path& source, const InstallRequest& request);
}  // namespace DmgSourceInstaller

namespace ZipSourceInstaller {
/// The same for an archive.
InstallActions install(Platform& platform, const Path& source, const InstallRequest& request);
}  // namespace ZipSourceInstaller

namespace PkgSourceInstaller {
/// Throws an error of the domain "pkg-install" with code 10 for a package without a trusted signature, unless
/// the option allows it.
InstallActions install(Platform& platform, const Path& source, const InstallRequest& request);
}  // namespace PkgSourceInstaller

namespace ScriptSourceInstaller {
/// Runs a script without a time limit, after making it executable if nobody may execute it. Throws an error
/// of the domain "script-install": with code 20, before the script is touched, unless the option allows
/// scripts; and with the script's exit status and what it wrote, if that isn't 0.
InstallActions install(Platform& platform, const Path& source, const InstallRequest& request);
}  // namespace ScriptSourceInstaller

}  // namespace quarn
