#pragma once

#include <string>
#include <vector>

#include "QuarnCore/launchers/LauncherAppBuilder.h"
#include "tests/support/Doubles.h"
#include "tests/support/Replacing.h"
#include "tests/support/Scene.h"

/// What the tests of launchers have in common: an application on the drive, the program that a launcher
/// holds, and tools that keep what they were asked.
namespace quarn::building {

using Lines = std::vector<std::string>;

inline const std::string app = "/Volumes/X9/ExternalQuarn/Apps/Foo.app";
inline const std::string launcher = "/Applications/Foo.app";
inline const std::string targetFile = "/Contents/Resources/ExternalAppTarget.txt";
inline const std::string executable = "/Contents/MacOS/ExternalAppLauncher";
inline const std::string programs = "/Users/me/opt/libexec";
inline const std::string program = programs + "/external-app-launcher";
inline const std::string lsregister =
    "/System/Library/Frameworks/CoreServices.framework/Frameworks/LaunchServices.framework/Support/"
    "lsregister";

/// A tool that succeeds and keeps its arguments, each on a line, in "/tmp/<name>".
inline void keepArguments(const std::string& tool) {
  scene::replaceTool(tool, "#!/bin/sh\nprintf '%s\\n' \"$@\" >>/tmp/${0##*/}\n");
}

class Scene {
 public:
  Scene() {
    places.firstArgument = programs + "/quarn";
    scene::replaceTool(program, "#!/bin/sh\necho opened\n");
    scene::makeApp(app);
    keepArguments("/usr/bin/codesign");
    keepArguments(lsregister);
  }
  Platform platform(const Platform& inner = hostPlatform()) { return replacing({.places = &places}, inner); }

  doubles::FakePlaces places;
};

/// What a run of the builder reported, and the error that it threw, if any, as the last line.
inline Lines install(Platform platform, const std::string& at = launcher, const std::string& target = app,
                     const std::string& source = {}) {
  Lines lines;
  const InstallerRunReporter reporter{[&lines](const std::string& line) { lines.push_back(line); }};
  const std::string error = thrown([&] {
    LauncherAppBuilder::install(platform, Path(source.empty() ? target : source), Path(at), Path(target),
                                reporter);
  });
  if (error != "nothing") lines.push_back("error: " + error);
  return lines;
}

inline Lines namesIn(const std::string& folder) {
  return hostPlatform().files.list(Path(folder), Hidden::included).valueOr({});
}

}  // namespace quarn::building
