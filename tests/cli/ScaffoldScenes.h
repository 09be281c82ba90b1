#pragma once

#include <filesystem>
#include <map>
#include <sys/stat.h>

#include "tests/cli/Expected.h"

/// What the tests of `scaffold build-command` say about projects and their scripts.
namespace scaffolds {

using Words = std::vector<std::string>;

inline const std::string project = "/Users/me/Paper Kite";

/// What its script builds, and where it installs it, on either road.
inline const std::string built = project + "/build/Paper Kite.app";
inline const std::string installed = "/Applications/Paper Kite.app";
inline const std::string apps = "/Volumes/X9/ExternalQuarn/Apps";
inline const std::string onDrive = apps + "/Paper Kite.app";
inline const std::string drive = "--external-drive=/Volumes/X9";
/// Is there while it is at work.
inline const std::string claim = "/tmp/Paper Kite.run";

/// Runs the generator in a project's folder.
inline scene::Run generate(const Words& options = {}, const std::string& folder = project) {
  Words words = {"scaffold", "build-command"};
  words.insert(words.end(), options.begin(), options.end());
  return scene::quarn(words, {.folder = folder});
}

inline mode_t modeOf(const std::string& path) {
  struct stat status {};
  return ::lstat(path.c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
}

/// What the generator prints.
inline std::string wrote(const std::string& path, const std::string& name, const std::string& source,
                         const std::string& preset, const std::string& defaultDrive = "") {
  return expected::printed("Wrote " + path + "\nApp name: " + name +
                           "\nSource bundle (edit if wrong): " + source + "\nBuild preset: " + preset + "\n" +
                           (defaultDrive.empty() ? "" : "Default external drive: " + defaultDrive + "\n") +
                           "\nTry:\n" + path +
                           "                                # install to /Applications\n" + path +
                           " --external-drive=/Volumes/X9   # install to external drive + symlink\n" + path +
                           " --no-install                   # build only\n");
}

/// Where a script of these tests puts what stood in the way, and a moment that `stopTheClock` shows.
inline const std::string temporary = "/Users/me/tmp";
inline const std::string stash = temporary + "/QuarnTrash";
inline const std::string moment = "20260102_030405";
inline const std::string tools = "/Users/me/tools";

/// An executable script.
inline void makeScript(const std::string& path, const std::string& text) {
  scene::write(path, text);
  std::filesystem::permissions(path, std::filesystem::perms(0755));
}

/// From now on `date` shows the same moment, so that everything happens within one second.
inline void stopTheClock() {
  makeScript(tools + "/date", "#!/bin/sh\n[ \"$*\" = +%Y%m%d_%H%M%S ] && echo " + moment + "\n");
}

inline std::map<std::string, std::string> environmentOf(const Words& more) {
  std::map<std::string, std::string> variables = {
      {"TMPDIR", temporary}, {"PATH", tools + ":/usr/local/bin:/usr/bin:/bin:/usr/sbin:/sbin"}};
  for (const std::string& variable : more) {
    variables[variable.substr(0, variable.find('='))] = variable.substr(variable.find('=') + 1);
  }
  return variables;
}

/// Runs a project's script as a person would who has `tools` on the path.
inline scene::Run build(const Words& options = {}, const std::string& folder = project,
                        const Words& environment = {}) {
  Words command = {folder + "/build.command"};
  command.insert(command.end(), options.begin(), options.end());
  Words variables;
  for (const auto& [name, value] : environmentOf(environment)) variables.push_back(name + "=" + value);
  return scene::run(command, {.environment = variables});
}

/// A project whose `make` assembles a bundle named after the folder, with the text of the file `version` in
/// it.
inline void makeProject(const std::string& folder = project, const std::string& version = "1") {
  scene::write(folder + "/Makefile", "all:\n\t@sh ./assemble\n");
  scene::write(folder + "/assemble",
               "set -e\n"
               "app=build/${PWD##*/}.app\n"
               "mkdir -p \"$app/Contents/MacOS\"\n"
               "{ echo '#!/bin/sh'; echo 'echo version '\"$(cat version)\"; } >\"$app/Contents/MacOS/kite\"\n"
               "chmod 755 \"$app/Contents/MacOS/kite\"\n"
               "echo '<key>CFBundleExecutable</key><string>kite</string>' >\"$app/Contents/Info.plist\"\n"
               "ln -sfn MacOS/kite \"$app/Contents/current\"\n");
  scene::write(folder + "/version", version);
}

/// The same, with its script.
inline void makeProjectWithScript(const Words& options = {}, const std::string& folder = project) {
  makeProject(folder);
  const auto run = generate(options, folder);
  if (run.status != 0) scene::fail(run.err);
}

inline std::string said(const std::string& bundle) {
  return scene::run({bundle + "/Contents/MacOS/kite"}).out;
}

}  // namespace scaffolds
