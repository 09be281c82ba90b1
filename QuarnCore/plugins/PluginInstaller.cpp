#include "QuarnCore/plugins/PluginInstaller.h"

#include <algorithm>

#include "QuarnCore/move/ChosenVolume.h"
#include "QuarnCore/move/MountPoints.h"
#include "QuarnCore/move/MoverError.h"
#include "QuarnCore/plugins/PluginContents.h"
#include "QuarnCore/plugins/PluginGuard.h"
#include "QuarnCore/plugins/PluginOnlyCopy.h"
#include "QuarnCore/plugins/PluginReplacement.h"
#include "QuarnCore/plugins/PluginTools.h"

namespace quarn {

std::size_t PluginInstallBatch::count(PluginInstallReport::Outcome outcome) const {
  const auto found = std::count_if(reports.begin(), reports.end(),
                                   [outcome](const auto& report) { return report.outcome == outcome; });
  return static_cast<std::size_t>(found);
}

namespace PluginInstaller {
namespace {

using Outcome = PluginInstallReport::Outcome;

constexpr const char* errorDomain = "PluginInstaller";
namespace ErrorCode {
constexpr int mkdir = 1;
constexpr int ln = 3;
constexpr int unresolved = 4;
constexpr int rm = 5;
constexpr int ditto = 6;
}  // namespace ErrorCode

void requireSucceeded(const CommandResult& result, int code, const std::string& text) {
  PluginTools::requireSucceeded(result, errorDomain, code, text);
}

/// Installs one plug-in. What it throws becomes the report.
class Installation {
 public:
  Installation(Platform& platform, const PluginBundle& bundle, const Path& drive, const Options& options,
               const Log& log)
      : platform_(platform),
        drive_(drive),
        options_(options),
        log_(log),
        places_{.source = Path(bundle.sourcePath),
                .external = bundle.externalizedPath(drive),
                .link = bundle.systemSymlinkPath()} {}

  /// Returns false if the plug-in is passed over.
  bool carryOut(const ChosenVolume& volume) {
    volume.requireHolds(platform_, drive_);
    if (isOnDrive() && !options_.overwrite) return false;
    PluginGuard::requireApart(platform_, places_, drive_);
    PluginContents::requireCopyable(platform_, places_.source);
    if (PluginTools::isAnythingAt(platform_, link()))
      standsAtLink_ = platform_.files.attributes(link()).orThrow();
    platform_.files.createFolder(places_.external.parent()).orThrow();
    if (isOnDrive()) removeCopy(volume);
    copy(volume);
    prepareCopy();
    makeSystemFolder();
    installLink(volume);
    return true;
  }

 private:
  const Path& external() const { return places_.external; }
  const Path& link() const { return places_.link; }

  /// A link that leads nowhere is in the way, too.
  bool isOnDrive() const { return PluginTools::isAnythingAt(platform_, external()); }

  void removeCopy(const ChosenVolume& volume) {
    PluginOnlyCopy::requireSafe(platform_, places_);
    PluginReplacement::requirePossible(platform_, places_);
    volume.requireHolds(platform_, external().parent());
    PluginGuard::requireOutlives(platform_, places_.source, external());
    const auto removed = platform_.files.isSymbolicLink(external())
                             ? platform_.files.removeSymbolicLink(external())
                             : platform_.files.remove(external());
    if (!removed) removeAsRoot(volume, external());
  }

  void removeAsRoot(const ChosenVolume& volume, const Path& item) {
    volume.requireHolds(platform_, external().parent());
    MountPoints::refuseInside(platform_, item);
    PluginTools::removeAsRoot(
        platform_, "-rf", item,
        {.domain = errorDomain, .code = ErrorCode::rm, .text = "rm " + item.text() + " failed: "});
  }

  void copy(const ChosenVolume& volume) {
    volume.requireHolds(platform_, external().parent());
    requireSucceeded(PluginTools::copy(platform_, places_.source, external()), ErrorCode::ditto,
                     "ditto failed: ");
    volume.requireHolds(platform_, external());
    PluginTools::requireWhole(platform_, places_.source, external());
    log_("copied\t" + external().text());
  }

  /// A plug-in that keeps its attributes or its signature is installed, too.
  void prepareCopy() {
    const std::string& copied = external().text();
    if (options_.stripQuarantine) CommandRunner::run(platform_, "/usr/bin/xattr", {"-cr", copied});
    if (options_.adhocCodesign)
      isSigned_ =
          CommandRunner::run(platform_, "/usr/bin/codesign", {"--force", "--deep", "--sign", "-", copied})
              .succeeded();
    platform_.files.flush(external()).orThrow();
  }

  void makeSystemFolder() {
    const Path folder = link().parent();
    if (platform_.files.exists(folder)) return;
    requireSucceeded(PluginTools::asRoot(platform_, {"mkdir", "-p", folder.text()}), ErrorCode::mkdir,
                     "mkdir " + folder.text() + " failed: ");
  }

  void installLink(const ChosenVolume& volume) {
    if (PluginTools::isAnythingAt(platform_, link())) removeWhatStandsAtLink(volume);
    requireSucceeded(PluginTools::asRoot(platform_, {"ln", "-s", external().text(), link().text()}),
                     ErrorCode::ln, "ln failed: ");
    requireResolves();
    log_("symlinked\t" + link().text() + "\t-> " + external().text());
    platform_.files.flush(link().parent()).orThrow();
  }

  /// It may be the source, and then the only other copy.
  void removeWhatStandsAtLink(const ChosenVolume& volume) {
    const auto now = platform_.files.attributes(link());
    if (!standsAtLink_ || !now || now->kind != standsAtLink_->kind ||
        now->identity != standsAtLink_->identity)
      throw replacedMeanwhile();
    // Signing may have taken minutes, and may have failed halfway.
    if (PluginGuard::isSourceAtLink(platform_, places_))
      PluginContents::requireUnspoilt(platform_, external(), link(), isSigned_);
    PluginGuard::requireOutlives(platform_, external(), link());
    removeAsRoot(volume, link());
  }

  void requireResolves() const {
    const auto target = platform_.files.readSymbolicLink(link());
    if (target && *target == external().text() && platform_.files.isFolder(link())) return;
    throw PlatformError(errorDomain, ErrorCode::unresolved, "symlink does not resolve");
  }

  MoveRefused replacedMeanwhile() const {
    return MoveRefused("“" + link().text() + "” was replaced meanwhile.");
  }

  Platform& platform_;
  const Path& drive_;
  const Options& options_;
  const Log& log_;
  const PluginPlaces places_;
  std::optional<FileAttributes> standsAtLink_;  ///< before anything was done
  bool isSigned_ = false;
};

void tell(PluginInstallReport& report, Outcome outcome, const std::string& message) {
  report.outcome = outcome;
  report.message = message;
}

PluginInstallReport reportOf(const PluginBundle& bundle, const Path& drive) {
  return {.bundle = bundle,
          .outcome = Outcome::failed,
          .destinationPath = bundle.externalizedPath(drive).text(),
          .symlinkPath = bundle.systemSymlinkPath().text(),
          .message = {}};
}

/// Installs onto the drive that was mounted for the first plug-in, and onto no other one for the rest.
class Run {
 public:
  Run(Platform& platform, const Path& drive, const Options& options, const Log& log)
      : platform_(platform), drive_(drive), options_(options), log_(log) {}

  PluginInstallReport install(const PluginBundle& bundle, bool isDisplaced) {
    PluginInstallReport report = reportOf(bundle, drive_);
    log_("plan\t" + std::string(rowOf(bundle.format).label) + "\t" + bundle.name + "\t-> " +
         *report.destinationPath);
    if (options_.dryRun) {
      tell(report, Outcome::skipped, "dry-run");
      return report;
    }
    try {
      if (!volume_) volume_ = ChosenVolume::ofDrive(platform_, drive_);
      if (isDisplaced) throw PluginOnlyCopy::refusal(bundle.systemSymlinkPath(), Path(bundle.sourcePath));
      if (Installation(platform_, bundle, drive_, options_, log_).carryOut(*volume_))
        tell(report, Outcome::installed, "ok");
      else
        tell(report, Outcome::skipped, "destination exists, overwrite disabled");
    } catch (const LocalizedError& error) {
      tell(report, Outcome::failed, error.localizedDescription());
    }
    return report;
  }

 private:
  Platform& platform_;
  const Path& drive_;
  const Options& options_;
  const Log& log_;
  std::optional<ChosenVolume> volume_;
};

}  // namespace

PluginInstallBatch install(Platform& platform, const std::vector<PluginBundle>& bundles, const Path& drive,
                           const Options& options, const Log& log) {
  PluginInstallBatch batch{.drive = drive.text(), .reports = {}};
  Run run(platform, drive, options, log);
  const std::vector<bool> displaced = PluginOnlyCopy::displaced(platform, bundles);
  for (std::size_t i = 0; i < bundles.size(); ++i)
    batch.reports.push_back(run.install(bundles[i], displaced[i]));
  return batch;
}

}  // namespace PluginInstaller
}  // namespace quarn
