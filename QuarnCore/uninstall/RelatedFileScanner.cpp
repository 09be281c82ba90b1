#include "QuarnCore/uninstall/RelatedFileScanner.h"

#include <algorithm>
#include <numeric>
#include <set>

#include "Platform/Text.h"
#include "QuarnCore/foundation/AppStorageNames.h"
#include "QuarnCore/foundation/CommandRunner.h"
#include "QuarnCore/foundation/SizingService.h"
#include "QuarnCore/installer/SessionStore.h"
#include "QuarnCore/uninstall/ExternalTarget.h"
#include "QuarnCore/uninstall/HomeLibraryFiles.h"
#include "QuarnCore/uninstall/SystemLibraryFiles.h"
#include "QuarnCore/uninstall/UninstallCandidateGuard.h"
#include "QuarnCore/uninstall/UsableNames.h"

namespace quarn {
namespace {

using Candidates = std::vector<UninstallCandidate>;

UninstallCandidate executable(const Path& path, const char* reason) {
  return {.path = path.text(),
          .category = UninstallCategory::executable,
          .confidence = UninstallConfidence::high,
          .reason = reason};
}

UninstallCandidate bundle(const AppRecord& record) {
  auto candidate =
      executable(Path(record.bundlePath), record.isSymlink ? "App bundle symlink" : "App bundle");
  candidate.defaultSelected = true;
  candidate.isSymlink = record.isSymlink;
  return candidate;
}

Candidates executables(const ReadOnlyPlatform& platform, const UninstallCandidateGuard& guard,
                       const AppRecord& record) {
  Candidates found;
  // A plan for a part of the system shows it; the run refuses.
  if (record.kind == AppRecordKind::systemRisky || guard.allows(Path(record.bundlePath)))
    found.push_back(bundle(record));
  const auto target = ExternalTarget::of(record);
  if (target && !Text::equal(target->text(), record.bundlePath) && platform.files.exists(*target) &&
      guard.allowsTarget(*target))
    found.push_back(executable(*target, "External target app"));
  return found;
}

/// The tool takes the identifier for a regular expression and looks for it anywhere in the identifiers of
/// packages, so packages of others may be among them.
Candidates receipts(const ReadOnlyPlatform& platform, const AppRecord& record) {
  const auto identifier = UsableNames::of(record).bundleIdentifier;
  if (!identifier) return {};
  const auto result = CommandRunner::run(platform, "/usr/sbin/pkgutil", {"--pkgs=" + *identifier});
  Candidates found;
  if (!result.succeeded()) return found;
  for (const std::string& packageID : result.lines()) {
    found.push_back({.path = packageID,
                     .category = UninstallCategory::receipts,
                     .confidence = UninstallConfidence::medium,
                     .reason = "pkgutil receipt for bundle id",
                     .isPrivileged = true});
  }
  return found;
}

bool tellsOf(const InstallerSession& session, const AppRecord& record) {
  const auto& paths = session.changedPaths;
  return std::any_of(paths.begin(), paths.end(), [&](const std::string& path) {
    return Text::equal(path, record.bundlePath) ||
           (record.externalTargetPath && Text::equal(path, *record.externalTargetPath));
  });
}

Candidates installerSessions(const ReadOnlyPlatform& platform, const AppRecord& record) {
  const Path root = AppStorageNames::sessionRoot(platform.places);
  Candidates found;
  for (const InstallerSession& session : SessionStore::list(platform, root)) {
    // A record with the identifier of another one was put there by somebody else.
    if (!tellsOf(session, record) || SessionStore::find(platform, session.id, root) != session) continue;
    found.push_back({.path = root.appending(session.id).text(),
                     .category = UninstallCategory::installerSession,
                     .confidence = UninstallConfidence::high,
                     .reason = "Quarn installer session record"});
  }
  return found;
}

bool hasSize(const UninstallCandidate& candidate) {
  return candidate.category != UninstallCategory::receipts &&
         candidate.category != UninstallCategory::installerSession;
}

/// Collects candidates: of several with one path, the first. A volume that ignores letter case has one folder
/// under several paths.
class Collection {
 public:
  explicit Collection(const ReadOnlyPlatform& platform) : platform_(platform) {}

  void add(Candidates more) {
    for (UninstallCandidate& candidate : more) {
      if (!paths_.insert(Text::canonical(candidate.path)).second || wasSeen(candidate)) continue;
      if (hasSize(candidate)) candidate.sizeBytes = SizingService::measure(platform_, Path(candidate.path));
      all_.push_back(std::move(candidate));
    }
  }

  Candidates all() && { return std::move(all_); }

 private:
  bool wasSeen(const UninstallCandidate& candidate) {
    if (!hasSize(candidate)) return false;
    const auto item = platform_.files.attributes(Path(candidate.path));
    return item && item->kind == FileKind::folder &&
           !folders_.emplace(item->identity.device, item->identity.inode).second;
  }

  ReadOnlyPlatform platform_;
  std::set<std::pair<std::int32_t, std::uint64_t>> folders_;
  std::set<std::string> paths_;
  Candidates all_;
};

Candidates allowed(const UninstallCandidateGuard& guard, Candidates found) {
  std::erase_if(found,
                [&](const UninstallCandidate& candidate) { return !guard.allows(Path(candidate.path)); });
  return found;
}

}  // namespace

std::vector<UninstallCandidate> RelatedFileScanner::scan(const ReadOnlyPlatform& platform,
                                                         const AppRecord& record) {
  const UninstallCandidateGuard guard(platform);
  Collection collection(platform);
  collection.add(executables(platform, guard, record));
  collection.add(allowed(guard, HomeLibraryFiles::candidates(platform, record)));
  collection.add(allowed(guard, SystemLibraryFiles::candidates(platform, record)));
  collection.add(receipts(platform, record));
  collection.add(installerSessions(platform, record));
  return std::move(collection).all();
}

std::int64_t AppFootprintCalculator::footprint(const ReadOnlyPlatform& platform, const AppRecord& record) {
  const auto found = RelatedFileScanner::scan(platform, record);
  return std::accumulate(
      found.begin(), found.end(), std::int64_t{0},
      [](std::int64_t sum, const UninstallCandidate& each) { return sum + each.sizeBytes; });
}

}  // namespace quarn
