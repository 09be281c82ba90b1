#include "QuarnCore/uninstall/UninstallCandidateGuard.h"

#include "Platform/Text.h"
#include "QuarnCore/foundation/AppStorageNames.h"
#include "QuarnCore/move/MountPoints.h"
#include "QuarnCore/move/MoverError.h"

namespace quarn {

UninstallCandidateGuard::UninstallCandidateGuard(const ReadOnlyPlatform& platform)
    : platform_(platform),
      protected_(platform),
      trash_(sight(platform.files, platform.places.home().appending(".Trash"))) {}

bool UninstallCandidateGuard::isPartOfSystem(const Sighting& item) const {
  const Path system("/System");
  return isAtOrInByText(item.spelled, system) || isAtOrInByText(item.leadsTo, system);
}

bool UninstallCandidateGuard::allows(const Path& item) const {
  if (!item.isAbsolute() || item.holdsNul()) return false;
  const Sighting sighting = sightItself(platform_.files, item);
  return !protected_.isOneOrAroundOne(sighting) && !protected_.isRecordOrBackup(sighting) &&
         !trash_.isAtOrIn(sighting) && !isPartOfSystem(sighting);
}

bool UninstallCandidateGuard::allowsTarget(const Path& item) const {
  return item.extension() == "app" && allows(item);
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

std::optional<std::string> UninstallCandidateGuard::reasonToStay(const UninstallCandidate& candidate,
                                                                 const AppRecord& app) const {
  const Path item(candidate.path);
  if (!allows(candidate, app)) return "“" + item.lastComponent() + "” belongs where it is.";
  try {
    if (platform_.files.exists(item)) MountPoints::refuseInside(platform_, item);
  } catch (const MoveRefused& refused) {
    return refused.localizedDescription();
  }
  return std::nullopt;
}

}  // namespace quarn
