#include "QuarnCore/launchers/LauncherTools.h"

#include "QuarnCore/foundation/CommandRunner.h"

namespace quarn::LauncherTools {
namespace {

const std::string codesign = "/usr/bin/codesign";
const std::string lsregister =
    "/System/Library/Frameworks/CoreServices.framework/Frameworks/LaunchServices.framework/Support/"
    "lsregister";

}  // namespace

void sign(Platform& platform, const Path& launcher, const InstallerRunReporter& reporter) {
  const auto result =
      CommandRunner::run(platform, codesign, {"--force", "--sign", "-", "--timestamp=none", launcher.text()});
  if (result.succeeded()) {
    reporter.log("signed-launcher\t" + launcher.text());
  } else {
    reporter.log("sign-launcher-warning\t" + result.standardError);
  }
}

void registerLauncher(Platform& platform, const Path& launcher, const InstallerRunReporter& reporter) {
  if (!platform.files.exists(Path(lsregister))) return;
  CommandRunner::run(platform, lsregister, {"-f", launcher.text()});
  reporter.log("registered-launcher\t" + launcher.text());
}

}  // namespace quarn::LauncherTools
