#include "QuarnCore/installer/InstallerRunner.h"

#include <algorithm>
#include <optional>

#include "Platform/DateText.h"
#include "Platform/Text.h"
#include "QuarnCore/foundation/AppStorageNames.h"
#include "QuarnCore/foundation/Turn.h"
#include "QuarnCore/installer/ChangesMerger.h"
#include "QuarnCore/installer/FilesystemEventRecorder.h"
#include "QuarnCore/installer/InstallAction.h"
#include "QuarnCore/installer/InstallerInspector.h"
#include "QuarnCore/installer/ReceiptScanner.h"
#include "QuarnCore/installer/ResumeCoordinator.h"
#include "QuarnCore/installer/SafeAppExternalizer.h"
#include "QuarnCore/installer/SessionStore.h"

namespace quarn::InstallerRunner {
namespace {

using Texts = std::vector<std::string>;

bool holds(const InstallerInspection& inspection, std::initializer_list<InstallerKind> kinds) {
  return std::any_of(inspection.items.begin(), inspection.items.end(), [&](const InstallableItem& item) {
    return std::find(kinds.begin(), kinds.end(), item.kind) != kinds.end();
  });
}

/// How much of the disk is watched for changes.
struct Scope {
  /// Packages and scripts may write anywhere. All that an application changes is known beforehand.
  bool isDeep = false;
  std::vector<Path> roots;
};

Scope scopeOf(const Places& places, const InstallerInspection& inspection, const InstallRequest& request) {
  Scope scope;
  scope.isDeep = holds(inspection, {InstallerKind::pkg, InstallerKind::mpkg, InstallerKind::script});
  scope.roots = {Path(request.option.applicationLinkRoot),
                 request.targetDrive.appending(request.option.externalRootName)};
  if (scope.isDeep) {
    for (const Path& root : Snapshotter::defaultRoots(places)) scope.roots.push_back(root);
  }
  return scope;
}

struct Snapshot {
  FileSnapshot files;
  ReceiptSnapshot receipts;
};

Snapshot capture(const ReadOnlyPlatform& platform, const Scope& scope, const char* word,
                 const InstallerRunReporter& reporter) {
  Snapshot snapshot{Snapshotter::capture(platform, scope.roots), ReceiptScanner::capture(platform)};
  reporter.log(InstallAction::line(word, {"files", std::to_string(snapshot.files.count())}));
  return snapshot;
}

/// What a session says from its beginning.
InstallerSession newSession(Platform& platform, const InstallerSource& source,
                            const InstallRequest& request) {
  InstallerSession session;
  session.id = DateText::compactLocal(platform.clock.now());
  session.sourcePath = source.given;
  session.optionID = request.option.id;
  session.targetDrivePath = request.targetDrive.text();
  return session;
}

void save(Platform& platform, const InstallerSession& session) {
  SessionStore::save(platform, session, AppStorageNames::sessionRoot(platform.places));
}

void saveFailed(Platform& platform, InstallerSession session) {
  session.createdAt = platform.clock.now();
  session.status = InstallerSessionStatus::failed;
  try {
    save(platform, session);
  } catch (const LocalizedError&) {
    // The error that made the installation fail is the one to report.
  }
}

/// A name that isn't text can't be stored in a session, and must not keep the rest from being recorded.
Texts storable(Texts texts) {
  std::erase_if(texts, [](const std::string& text) { return !Text::isUTF8(text); });
  return texts;
}

Texts pathsOf(const std::vector<Path>& apps) {
  Texts paths;
  for (const Path& app : apps) paths.push_back(app.text());
  return storable(std::move(paths));
}

/// Records what an installation did, and takes the new applications to the drive.
InstallerSession conclude(Platform& platform, InstallerSession session, const InstallRequest& request,
                          const Scope& scope, const Snapshot& before, const Texts& livePaths) {
  const InstallerRunReporter& reporter = request.reporter;
  // Until the end, so that what is new now is still new, and no launcher of another run, when it is moved.
  const Turn turn(platform, reporter.waiting);
  const Snapshot after = capture(platform, scope, "snapshot-after", reporter);
  if (scope.isDeep && request.option.relocateSafeApps)
    session.pendingExternalizeApps =
        pathsOf(SafeAppExternalizer::newApplications(platform, before.files, after.files));
  session.createdAt = platform.clock.now();
  session.changedPaths =
      storable(ChangesMerger::merge(before.files, after.files, session.actions, livePaths));
  session.newReceipts = ReceiptScanner::added(before.receipts, after.receipts);
  if (!session.pendingExternalizeApps.empty()) session.status = InstallerSessionStatus::pendingExternalize;
  save(platform, session);
  reporter.log(InstallAction::line("session", {session.id}));
  if (session.pendingExternalizeApps.empty()) return session;
  return ExternalizeFinalizer::finalize(platform, session, request.option, request.targetDrive, reporter);
}

}  // namespace

InstallerSession run(Platform& platform, const InstallerSource& source, const InstallRequest& request) {
  const InstallerRunReporter& reporter = request.reporter;
  TemporaryFolders temporaryFolders(platform);
  std::optional<Turn> turn;
  // An image is attached once for all: a run that is done with it would take it away from another one.
  if (InstallerKinds::detect(platform, source.path) == InstallerKind::dmg)
    turn.emplace(platform, reporter.waiting);
  const auto inspection = InstallerInspector::inspect(platform, temporaryFolders, source);
  reporter.log(InstallAction::line("inspect", {std::string(rawValue(inspection.kind)), source.given}));
  const Scope scope = scopeOf(platform.places, inspection, request);
  // What a package changed is found by comparing the disk before and after: what another run does meanwhile
  // would be taken for the package's.
  if (!turn && holds(inspection, {InstallerKind::pkg, InstallerKind::mpkg}))
    turn.emplace(platform, reporter.waiting);
  const Snapshot before = capture(platform, scope, "snapshot-before", reporter);
  FilesystemEventRecorder recorder(platform, scope.isDeep ? scope.roots : std::vector<Path>{});
  recorder.start();
  reporter.log(InstallAction::line("events", {scope.isDeep ? "start" : "skip-focused"}));
  InstallerSession session = newSession(platform, source, request);
  try {
    session.actions = SourceInstaller::install(platform, source.path, request);
  } catch (const LocalizedError& error) {
    recorder.stop();
    reporter.log(InstallAction::line("failed", {error.localizedDescription()}));
    saveFailed(platform, session);
    throw;
  }
  const Texts livePaths = recorder.stop();
  return conclude(platform, std::move(session), request, scope, before, livePaths);
}

}  // namespace quarn::InstallerRunner
