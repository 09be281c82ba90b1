#pragma once

#include <gtest/gtest.h>

#include "QuarnCore/plugins/PluginMover.h"
#include "tests/plugins/InstalledPlugins.h"
#include "tests/plugins/Installing.h"

/// What the tests of the mover share: a plug-in "A.vst3", in the system or on the drive.
namespace quarn::moving {

using namespace installed;
using installing::everything;
using installing::gantrix;
using installing::order;
using PluginMover::MoveReport;
using Kind = PluginInstallStatus::Kind;

inline const std::string place = vst3 + "/A.vst3";
inline const std::string copy = onDrive + "/VST3/A.vst3";
inline const std::string movedOut = "moved: ok → " + copy;

class MovingPlugins : public testing::Test {
 protected:
  void makeNative() { installed::makeBundle(place); }
  void makeExternalised(const std::string& target = copy) {
    installed::makeBundle(target);
    scene::link(place, target);
  }
  static InstalledPlugin plugin(const std::string& name = "A.vst3") {
    for (const InstalledPlugin& found : scanned()) {
      if (found.name == name) return found;
    }
    scene::fail("no plug-in " + name);
  }

  PluginMover::Log log() {
    log_.clear();
    return [this](const std::string& line) { log_.push_back(line); };
  }
  /// "failed: MESSAGE", a line each.
  static std::string told(const std::vector<MoveReport>& reports) {
    std::string text;
    for (const MoveReport& report : reports) {
      text += (text.empty() ? "" : "\n") + std::string(rawValue(report.outcome)) + ": " + report.message;
    }
    return text;
  }

  std::string move(const InstalledPlugin& item = plugin(), Platform& platform = hostPlatform()) {
    return told(PluginMover::moveToExternal(platform, {item}, drive_, log()));
  }
  std::string restore(const InstalledPlugin& item = plugin(), Platform& platform = hostPlatform()) {
    return told(PluginMover::restoreToSystem(platform, {item}, log()));
  }
  std::string remove(bool removeExternalData, const InstalledPlugin& item = plugin(),
                     Platform& platform = hostPlatform()) {
    return told(PluginMover::remove(platform, {item}, removeExternalData, log()));
  }

  Path drive_{"/Volumes/X9"};
  Lines log_;
};

}  // namespace quarn::moving
