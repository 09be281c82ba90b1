#include "bench/InstallRows.h"

#include <filesystem>

#include "bench/Contest.h"
#include "bench/Programs.h"
#include "bench/ReplacedTool.h"
#include "bench/Table.h"
#include "bench/Trees.h"

namespace bench {
namespace {

namespace fs = std::filesystem;

/// The image is a folder, so that neither mounting nor unpacking counts.
void inspection() {
  const std::string volume = "/Volumes/Image";
  makeTree(volume, 100'000, 22'000);
  makeApp(volume + "/Main.app", "com.example.main");
  const ReplacedTool hdiutil(
      "/usr/bin/hdiutil",
      "#!/bin/sh\n[ \"$1\" = attach ] || exit 0\n"
      "echo '<plist version=\"1.0\"><dict><key>system-entities</key><array><dict><key>mount-point</key>"
      "<string>" +
          volume + "</string></dict></array></dict></plist>'\n");
  print({"`install inspect` of an image, 100,000 files", "`find` on its volume", 1.3},
        compete({{quarn, "install", "inspect", "/tmp/Image.dmg"}, {"find", volume, "-printf", ""}, 21}));
  timed({"rm", "-rf", volume});
}

void installation(const std::string& subject) {
  const std::string app = "/tmp/Big.app";
  const std::string folder = "/Volumes/X9/ExternalQuarn";
  const std::string copy = folder + "/Apps/Big.app";
  makeApp(app, "com.example.big");
  makeTree(app + "/Contents/Resources", 50'000, 5'000);
  const std::string nothing = "#!/bin/sh\n";
  const ReplacedTool pkgutil("/usr/sbin/pkgutil", nothing), codesign("/usr/bin/codesign", nothing);
  const auto fresh = [&] {
    timed({"rm", "-rf", "/Applications/Big.app", folder});
    timed({"mkdir", "-p", folder + "/Apps"});
  };
  const Command run = {quarn,        "install", "run", app, "--option", "trusted-external", "--target-drive",
                       "/Volumes/X9"};
  const auto measure = [&](const Command& command) {
    if (command != run) return timed(command);
    const Timing alone = timed({subject, "copy", app, copy});
    fresh();
    return less(timed(command), alone);
  };
  print({"`install run` less its copy, 50,000 files", "`cp -a`", 0.5},
        compete({run, {"cp", "-a", app, copy}, 11, fresh, measure}));
  timed({"rm", "-rf", "/Applications/Big.app", folder, app,
         "/Users/me/Library/Application Support/Quarn/InstallerSessions"});
}

}  // namespace

void printInstallRows(const std::string& subject) {
  inspection();
  installation(subject);
}

}  // namespace bench
