#pragma once

#include <gtest/gtest.h>

#include "QuarnCore/plugins/PluginInstaller.h"
#include "tests/support/GatedPlatform.h"
#include "tests/support/Scene.h"

/// What the tests of the installer share: a plug-in "A.vst3", and where it comes to lie.
namespace quarn::installing {

using Lines = std::vector<std::string>;
using Outcome = PluginInstallReport::Outcome;

inline const std::string source = "/Users/me/plug-ins/A.vst3";
inline const std::string folder = "/Library/Audio/Plug-Ins/VST3";
inline const std::string systemLink = folder + "/A.vst3";
inline const std::string plugins = "/Volumes/X9/ExternalQuarn/Plugins";
inline const std::string external = plugins + "/VST3/A.vst3";
inline const std::string gantrix = "/usr/local/bin/gantrix";

inline void makeBundle(const std::string& path, const std::string& content = "code") {
  scene::write(path + "/Contents/MacOS/code", content);
  scene::write(path + "/Contents/Resources/sound", "sound of " + content);
}

inline PluginBundle bundleAt(const std::string& path, PluginFormat format = PluginFormat::vst3) {
  return {.format = format, .name = Path(path).lastComponent(), .sourcePath = path};
}

/// Orders for a stand-in.
inline void order(const std::string& tool, const std::string& orders) {
  scene::write("/var/db/quarn-room-tools/" + tool, orders + "\n");
}

inline Lines everything() {
  Lines lines;
  for (const std::string top : {"/Library", "/Volumes", "/Users/me"}) {
    for (const std::string& line : scene::tree(top)) lines.push_back(top + " " + line);
  }
  return lines;
}

class Installing : public testing::Test {
 protected:
  void SetUp() override { makeBundle(source); }

  PluginInstallReport install(const PluginBundle& bundle = bundleAt(source),
                              Platform& platform = hostPlatform()) {
    return installAll({bundle}, platform).reports.at(0);
  }
  PluginInstallBatch installAll(const std::vector<PluginBundle>& bundles,
                                Platform& platform = hostPlatform()) {
    log_.clear();
    return PluginInstaller::install(platform, bundles, drive_, options_,
                                    [this](const std::string& line) { log_.push_back(line); });
  }
  /// "failed: MESSAGE"
  static std::string told(const PluginInstallReport& report) {
    return std::string(rawValue(report.outcome)) + ": " + report.message;
  }
  void expectRefused(const std::string& message, const PluginBundle& bundle = bundleAt(source)) {
    const Lines before = everything();
    EXPECT_EQ(told(install(bundle)), "failed: " + message);
    EXPECT_EQ(everything(), before);
  }

  Path drive_{"/Volumes/X9"};
  PluginInstaller::Options options_{.overwrite = true};
  Lines log_;
};

}  // namespace quarn::installing
