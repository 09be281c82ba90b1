#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "Platform/HostPlatform.h"
#include "QuarnCore/plugins/PluginCatalogScanner.h"
#include "tests/support/Scene.h"

/// What the tests of installed plug-ins share.
namespace quarn::installed {

using Lines = std::vector<std::string>;

inline const std::string components = "/Library/Audio/Plug-Ins/Components";
inline const std::string vst3 = "/Library/Audio/Plug-Ins/VST3";
inline const std::string vst2 = "/Library/Audio/Plug-Ins/VST";
inline const std::string aax = "/Library/Application Support/Avid/Audio/Plug-Ins";
inline const std::string onDrive = "/Volumes/X9/ExternalQuarn/Plugins";

inline const std::set<PluginFormat> everyFormat = {PluginFormat::au, PluginFormat::vst3, PluginFormat::vst2,
                                                   PluginFormat::clap, PluginFormat::aax};

/// Makes a bundle anew.
inline void makeBundle(const std::string& path, const std::string& code = "code") {
  std::filesystem::remove_all(path);
  scene::write(path + "/Contents/MacOS/code", code);
  scene::write(path + "/Contents/Info.plist", "plist");
  scene::write(path + "/Contents/.hidden", "also mine");
  scene::link(path + "/Contents/link", "MacOS/code");
}

inline std::vector<InstalledPlugin> scanned(const std::set<PluginFormat>& formats = everyFormat) {
  return PluginCatalogScanner::scan(hostPlatform(), formats);
}

}  // namespace quarn::installed
