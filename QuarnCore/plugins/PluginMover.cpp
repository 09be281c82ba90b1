#include "QuarnCore/plugins/PluginMover.h"

#include <optional>

#include "QuarnCore/foundation/Turn.h"
#include "QuarnCore/move/ChosenVolume.h"
#include "QuarnCore/move/MountPoints.h"
#include "QuarnCore/move/MoverError.h"
#include "QuarnCore/plugins/PluginMoverGuard.h"
#include "QuarnCore/plugins/PluginTools.h"

namespace quarn::PluginMover {
namespace {

using Outcome = MoveReport::Outcome;
using Kind = PluginInstallStatus::Kind;

constexpr const char* errorDomain = "PluginMover";
namespace ErrorCode {
constexpr int ditto = 1;
constexpr int rm = 2;
constexpr int ln = 3;
}  // namespace ErrorCode

void requireSucceeded(const CommandResult& result, int code, const std::string& text) {
  PluginTools::requireSucceeded(result, errorDomain, code, text);
}

void removeAsRoot(const ReadOnlyPlatform& platform, const char* flags, const Path& item,
                  const std::string& text) {
  PluginTools::removeAsRoot(platform, flags, item,
                            {.domain = errorDomain, .code = ErrorCode::rm, .text = text});
}

/// Replaces a native plug-in by a link to its copy.
class MoveOut {
 public:
  MoveOut(Platform& platform, const InstalledPlugin& plugin, const ChosenVolume& volume, const Path& drive)
      : platform_(platform),
        plugin_(plugin),
        volume_(volume),
        drive_(drive),
        places_{.source = Path(plugin.systemPath),
                .external = PluginFormats::externalizedPath(plugin.format, plugin.name, drive),
                .link = Path(plugin.systemPath)} {}

  void carryOut() {
    volume_.requireHolds(platform_, drive_);
    PluginMoverGuard::requireMovable(platform_, plugin_, places_, drive_);
    const FileIdentity seen = identity();
    platform_.files.createFolder(external().parent()).orThrow();
    volume_.requireHolds(platform_, external().parent());
    makeRoom();
    copy();
    removeNative(seen);
    makeLink();
  }

 private:
  const Path& external() const { return places_.external; }
  const Path& place() const { return places_.link; }
  FileIdentity identity() const { return platform_.files.attributes(place()).orThrow().identity; }

  void makeRoom() {
    // A link that leads nowhere is in the way, too.
    if (platform_.files.isSymbolicLink(external())) {
      platform_.files.removeSymbolicLink(external()).orThrow();
    } else if (PluginTools::isAnythingAt(platform_, external())) {
      PluginGuard::requireOutlives(platform_, place(), external());
      platform_.files.remove(external()).orThrow();
    }
  }

  void copy() {
    requireSucceeded(PluginTools::copy(platform_, place(), external()), ErrorCode::ditto, "ditto: ");
    PluginTools::requireWhole(platform_, place(), external());
  }

  /// The copy may have taken minutes.
  void removeNative(const FileIdentity& seen) {
    volume_.requireHolds(platform_, external());
    MountPoints::refuseInside(platform_, place());
    if (identity() != seen) throw MoveRefused("“" + place().text() + "” was replaced meanwhile.");
    PluginGuard::requireOutlives(platform_, external(), place());
    removeAsRoot(platform_, "-rf", place(), "rm: ");
  }

  void makeLink() {
    requireSucceeded(PluginTools::asRoot(platform_, {"ln", "-s", external().text(), place().text()}),
                     ErrorCode::ln, "ln: ");
    if (platform_.files.readSymbolicLink(place()).valueOr("") != external().text())
      throw PlatformError(errorDomain, ErrorCode::ln, "ln: “" + place().text() + "” is missing.");
    platform_.files.flush(place().parent()).orThrow();
  }

  Platform& platform_;
  const InstalledPlugin& plugin_;
  const ChosenVolume& volume_;
  const Path& drive_;
  const PluginPlaces places_;
};

/// A failure is ignored: the plug-in is home, or is not wanted any more.
void removeOwnCopy(Platform& platform, const InstalledPlugin& plugin, const ChosenVolume& volume) {
  const Path copy(plugin.status.target);
  if (volume.holds(platform, copy) && PluginMoverGuard::isOwnCopy(platform, plugin))
    platform.files.remove(copy).orIgnore();
}

void bringHome(Platform& platform, const InstalledPlugin& plugin) {
  const Path place(plugin.systemPath), target(plugin.status.target);
  const ChosenVolume volume = PluginMoverGuard::requireRestorable(platform, plugin);
  volume.requireHolds(platform, target);
  removeAsRoot(platform, "-f", place, "rm symlink: ");
  requireSucceeded(PluginTools::copy(platform, target, place), ErrorCode::ditto, "ditto restore: ");
  PluginTools::requireWhole(platform, target, place);
  PluginGuard::requireOutlives(platform, place, target);
  removeOwnCopy(platform, plugin, volume);
}

void removeForGood(Platform& platform, const InstalledPlugin& plugin, bool removeExternalData) {
  const Path place(plugin.systemPath);
  PluginMoverGuard::requireRemovable(platform, plugin);
  const bool takesCopy = removeExternalData && plugin.status.kind == Kind::externalised &&
                         PluginMoverGuard::isOwnCopy(platform, plugin);
  const auto volume = ChosenVolume::holding(platform, Path(plugin.status.target));
  removeAsRoot(platform, "-rf", place, "rm: ");
  if (takesCopy && volume) removeOwnCopy(platform, plugin, *volume);
}

/// What a step throws is the message.
template <class Act>
MoveReport reportOf(const InstalledPlugin& plugin, Outcome outcome, const std::string& message,
                    const Act& act) {
  try {
    act();
    return {.plugin = plugin, .outcome = outcome, .message = message};
  } catch (const LocalizedError& error) {
    return {.plugin = plugin, .outcome = Outcome::failed, .message = error.localizedDescription()};
  }
}

MoveReport skipped(const InstalledPlugin& plugin, const std::string& message) {
  return {.plugin = plugin, .outcome = Outcome::skipped, .message = message};
}

}  // namespace

std::vector<MoveReport> moveToExternal(Platform& platform, const std::vector<InstalledPlugin>& plugins,
                                       const Path& drive, const Log& log) {
  const Turn turn(platform);
  std::vector<MoveReport> reports;
  std::optional<ChosenVolume> volume;
  for (const InstalledPlugin& plugin : plugins) {
    if (plugin.status.kind != Kind::native) {
      reports.push_back(skipped(plugin, "not native"));
      continue;
    }
    const std::string to = PluginFormats::externalizedPath(plugin.format, plugin.name, drive).text();
    log("move " + plugin.name + " → " + to);
    reports.push_back(reportOf(plugin, Outcome::moved, "ok → " + to, [&] {
      if (!volume) volume = ChosenVolume::ofDrive(platform, drive);
      MoveOut(platform, plugin, *volume, drive).carryOut();
    }));
  }
  return reports;
}

std::vector<MoveReport> restoreToSystem(Platform& platform, const std::vector<InstalledPlugin>& plugins,
                                        const Log& log) {
  const Turn turn(platform);
  std::vector<MoveReport> reports;
  for (const InstalledPlugin& plugin : plugins) {
    if (plugin.status.kind != Kind::externalised) {
      reports.push_back(skipped(plugin, "not externalised"));
      continue;
    }
    log("restore " + plugin.name + " from " + plugin.status.target);
    reports.push_back(reportOf(plugin, Outcome::restored, "ok", [&] { bringHome(platform, plugin); }));
  }
  return reports;
}

std::vector<MoveReport> remove(Platform& platform, const std::vector<InstalledPlugin>& plugins,
                               bool removeExternalData, const Log& log) {
  const Turn turn(platform);
  std::vector<MoveReport> reports;
  for (const InstalledPlugin& plugin : plugins) {
    log("remove " + plugin.name);
    reports.push_back(reportOf(plugin, Outcome::removed, "ok",
                               [&] { removeForGood(platform, plugin, removeExternalData); }));
  }
  return reports;
}

}  // namespace quarn::PluginMover
