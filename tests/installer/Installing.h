#pragma once

#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "Platform/HostPlatform.h"
#include "QuarnCore/installer/SourceInstallers.h"
#include "tests/support/Replacing.h"
#include "tests/support/Scene.h"

/// What the tests of the installers share.
namespace quarn::installing {

inline const std::string apps = "/Volumes/X9/ExternalQuarn/Apps";

inline InstallerOption option() {
  return {.id = "own",
          .label = "Own",
          .strategy = "x",
          .sourceKinds = {},
          .allowUntrustedPackages = false,
          .allowUntrustedScripts = false,
          .externalRootName = "ExternalQuarn",
          .applicationLinkRoot = "/Applications",
          .track = true,
          .relocateSafeApps = true};
}

/// An option that lets everything be installed.
inline InstallerOption lenient() {
  InstallerOption chosen = option();
  chosen.allowUntrustedPackages = chosen.allowUntrustedScripts = true;
  return chosen;
}

/// A request whose steps are kept.
struct Request {
  explicit Request(InstallerOption chosen = option()) {
    request = {.option = std::move(chosen),
               .targetDrive = Path("/Volumes/X9"),
               .useGantrix = false,
               .reporter = {.sink = [this](const std::string& line) { lines.push_back(line); }}};
  }
  Request(const Request&) = delete;
  Request& operator=(const Request&) = delete;

  std::vector<std::string> lines;
  InstallRequest request;
};

/// Lines without those of the launcher builder.
inline std::vector<std::string> withoutLauncher(std::vector<std::string> lines) {
  std::erase_if(lines, [](const std::string& line) {
    for (const char* word : {"launcher-app\t", "signed-launcher\t", "registered-launcher\t",
                             "reuse-launcher\t", "stash-existing-launcher\t", "sign-launcher-warning\t"}) {
      if (line.starts_with(word)) return true;
    }
    return false;
  });
  return lines;
}

inline std::vector<std::string> namesIn(const std::string& folder) {
  std::vector<std::string> names;
  if (!scene::exists(folder)) return names;
  for (const auto& item : std::filesystem::directory_iterator(folder))
    names.push_back(item.path().filename().string());
  std::sort(names.begin(), names.end());
  return names;
}

inline std::string launcherTarget(const std::string& launcher) {
  return scene::read(launcher + "/Contents/Resources/ExternalAppTarget.txt");
}

}  // namespace quarn::installing
