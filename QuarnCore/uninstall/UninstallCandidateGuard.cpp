#include "QuarnCore/uninstall/UninstallCandidateGuard.h"

#include "Platform/Text.h"
#include "QuarnCore/foundation/AppStorageNames.h"
#include "QuarnCore/foundation/FileStash.h"

namespace quarn {

UninstallCandidateGuard::UninstallCandidateGuard(const ReadOnlyPlatform& platform)
    : platform_(platform),
      protected_(platform),
      trash_(sight(platform.files, platform.places.home().appending(".Trash"))) {}

bool UninstallCandidateGuard::isPartOfSystem(const Sighting& item) const {
  const Path system("/System");
  return isAtOrInByText(item.spelled, system) || isAtOrInByText(item.leadsTo, system);
}

bool UninstallCandidateGuard::isBundle(const Path& path) {
  return Text::lowercased(path.extension()) == "app";
}

bool UninstallCandidateGuard::allows(const Path& item) const {
  if (!item.isAbsolute() || item.holdsNul() || !Text::isUTF8(item.text())) return false;
  // A volume may ignore letter case.
  if (Text::lowercased(item.lastComponent()) == Text::lowercased(FileStash::folderName)) return false;
  const Sighting sighting = sightItself(platform_.files, item);
  return !protected_.isOneOrAroundOne(sighting) && !protected_.isRecordOrBackup(sighting) &&
         !trash_.isAtOrIn(sighting) && !isPartOfSystem(sighting);
}

bool UninstallCandidateGuard::allowsTarget(const Path& item) const {
  return isBundle(item) && allows(item);
}

/// The record of an installation is a folder of its own right below the one for them.
bool UninstallCandidateGuard::allowsInstallerSession(const Path& item) const {
  const Sighting sighting = sightItself(platform_.files, item);
  const Path sessions = sight(platform_.files, AppStorageNames::sessionRoot(platform_.places)).leadsTo;
  return !item.holdsNul() && sighting.leadsTo.parent() == sessions;
}

bool UninstallCandidateGuard::allows(const UninstallCandidate& candidate, const AppRecord& app) const {
  const Path item(candidate.path);
  if (candidate.category == UninstallCategory::installerSession) return allowsInstallerSession(item);
  const bool isTarget =
      candidate.category == UninstallCategory::executable && !Text::equal(candidate.path, app.bundlePath);
  return isTarget ? allowsTarget(item) : allows(item);
}

}  // namespace quarn
