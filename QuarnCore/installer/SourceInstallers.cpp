#include "QuarnCore/installer/SourceInstallers.h"

#include "Platform/CocoaError.h"
#include "Platform/Text.h"
#include "QuarnCore/foundation/CommandRunner.h"
#include "QuarnCore/installer/AppInstallEngine.h"
#include "QuarnCore/installer/ContainedItemScanner.h"
#include "QuarnCore/installer/DiskImageMounter.h"
#include "QuarnCore/installer/Gantrix.h"
#include "QuarnCore/installer/InstallAction.h"
#include "QuarnCore/installer/InstallerError.h"
#include "QuarnCore/installer/PackageInstaller.h"
#include "QuarnCore/installer/ZipExpander.h"

namespace quarn {
namespace {

PlatformError unsupported() {
  return {"install", 1, "Unsupported source type."};
}

void tellOfSource(const InstallRequest& request, const char* kind, const Path& source) {
  request.reporter.log(InstallAction::line("source", {kind, source.text()}));
}

void installItemsIn(Platform& platform, const Path& folder, const InstallRequest& request,
                    InstallActions& actions) {
  for (const InstallableItem& item : ContainedItemScanner::scan(platform, folder)) {
    for (std::string& action : SourceInstaller::install(platform, Path(item.path), request))
      actions.push_back(std::move(action));
  }
}

/// Sets the folder of an archive aside at the end of the scope, however it is left.
class ExpandedArchive {
 public:
  ExpandedArchive(Platform& platform, const Path& archive)
      : temporaryFolders_(platform), folder_(ZipExpander::expand(platform, temporaryFolders_, archive)) {}
  ~ExpandedArchive() { temporaryFolders_.setAside(folder_, "zip-run"); }
  ExpandedArchive(const ExpandedArchive&) = delete;
  ExpandedArchive& operator=(const ExpandedArchive&) = delete;

  const Path& folder() const { return folder_; }

 private:
  TemporaryFolders temporaryFolders_;
  const Path folder_;
};

constexpr std::uint32_t anyoneMayExecute = 0111;

/// Failures are ignored: bash(1) only has to be able to read a script.
void makeExecutable(Platform& platform, const Path& script) {
  const auto attributes = platform.files.attributes(script);
  if (!attributes || (attributes->permissions & anyoneMayExecute) != 0) return;
  platform.files.setPermissions(script, attributes->permissions | anyoneMayExecute).orIgnore();
}

}  // namespace

InstallActions SourceInstaller::install(Platform& platform, const Path& source,
                                        const InstallRequest& request) {
  if (!Text::isUTF8(source.text()))
    throw CocoaError::fromCode(CocoaError::Operation::readFile, CocoaErrorCode::fileReadInvalidFileName,
                               source);
  if (InstallerKinds::isSpecial(platform, source)) throw unsupported();
  switch (InstallerKinds::detect(platform, source)) {
    case InstallerKind::app:
      return AppSourceInstaller::install(platform, source, request);
    case InstallerKind::dmg:
      return DmgSourceInstaller::install(platform, source, request);
    case InstallerKind::zip:
      return ZipSourceInstaller::install(platform, source, request);
    case InstallerKind::pkg:
    case InstallerKind::mpkg:
      return PkgSourceInstaller::install(platform, source, request);
    case InstallerKind::script:
      return ScriptSourceInstaller::install(platform, source, request);
    case InstallerKind::unknown:
      break;
  }
  throw unsupported();
}

InstallActions AppSourceInstaller::install(Platform& platform, const Path& source,
                                           const InstallRequest& request) {
  tellOfSource(request, "app", source);
  return {AppInstallEngine::install(platform, source, request.option, request.targetDrive, request.reporter)};
}

InstallActions DmgSourceInstaller::install(Platform& platform, const Path& source,
                                           const InstallRequest& request) {
  tellOfSource(request, "dmg", source);
  const DiskImageMounter::Attached image(platform, source);
  request.reporter.log(InstallAction::line("dmg-mounted", {std::to_string(image.mountPoints().size())}));
  InstallActions actions;
  for (const Path& mountPoint : image.mountPoints()) installItemsIn(platform, mountPoint, request, actions);
  image.requireAttached();
  return actions;
}

InstallActions ZipSourceInstaller::install(Platform& platform, const Path& source,
                                           const InstallRequest& request) {
  tellOfSource(request, "zip", source);
  const ExpandedArchive archive(platform, source);
  InstallActions actions;
  installItemsIn(platform, archive.folder(), request, actions);
  return actions;
}

InstallActions PkgSourceInstaller::install(Platform& platform, const Path& source,
                                           const InstallRequest& request) {
  tellOfSource(request, "pkg", source);
  if (!request.option.allowUntrustedPackages && !PackageTrustInspector::inspect(platform, source).isTrusted())
    throw PlatformError("pkg-install", 10, "Untrusted package blocked.");
  return {PackageInstaller::install(platform, source, request.useGantrix, request.reporter)};
}

InstallActions ScriptSourceInstaller::install(Platform& platform, const Path& source,
                                              const InstallRequest& request) {
  tellOfSource(request, "script", source);
  if (!request.option.allowUntrustedScripts)
    throw PlatformError("script-install", 20,
                        "Shell scripts are blocked by this install option. Use an option with "
                        "allowUntrustedScripts = true (e.g. tracked-script-external).");
  makeExecutable(platform, source);
  const std::string executable = request.useGantrix ? Gantrix::path(platform).text() : "/bin/bash";
  InstallActions arguments = {source.text()};
  if (request.useGantrix) arguments.insert(arguments.begin(), "bash");
  request.reporter.log(InstallAction::line("run-script", {executable, source.text()}));
  const CommandResult result = CommandRunner::run(platform, executable, arguments);
  if (!result.succeeded())
    throw InstallerError::ofTool("script-install", result.status,
                                 result.standardError + result.standardOutput);
  const std::string action = InstallAction::ranScript(source);
  request.reporter.log(action);
  return {action};
}

}  // namespace quarn
