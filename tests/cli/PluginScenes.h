#pragma once

#include <gtest/gtest.h>

#include "tests/cli/Expected.h"

/// What the tests of the plug-in commands share.
namespace plugins {

using Lines = std::vector<std::string>;

inline const std::string source = "/Users/me/plug-ins";
inline const std::string onDrive = "/Volumes/X9/ExternalQuarn/Plugins";
inline const std::string system = "/Library/Audio/Plug-Ins";
inline const std::string tools = "/var/db/quarn-room-tools/";

inline void makeBundle(const std::string& path, const std::string& content = "code") {
  scene::write(path + "/Contents/MacOS/code", "#!/bin/sh\n# " + content + "\n");
  scene::write(path + "/Contents/Resources/a sound", "sound of " + content);
  scene::link(path + "/Contents/Current", "MacOS");
}

/// `install plugins`, which may attach an image.
inline scene::Run quarn(Lines words) {
  words.insert(words.begin(), {"install", "plugins"});
  return scene::quarn(words, {.mayMount = true});
}

inline scene::Run install(const std::string& from = source, const Lines& more = {"--yes"}) {
  Lines words = {"install", from, "--target-drive", scene::drive};
  words.insert(words.end(), more.begin(), more.end());
  return quarn(words);
}

inline std::string size(const std::string& bundle) {
  return "  (" + expected::sizeOf(bundle) + ")";
}

/// The tree of a bundle without what signing adds to it.
inline Lines unsignedTree(const std::string& bundle) {
  Lines lines = scene::exists(bundle) && !scene::isLink(bundle) ? scene::tree(bundle) : Lines{};
  std::erase_if(lines,
                [](const std::string& line) { return line.find("_CodeSignature") != std::string::npos; });
  return lines;
}

}  // namespace plugins
