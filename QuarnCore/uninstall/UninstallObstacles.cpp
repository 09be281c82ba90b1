#include "QuarnCore/uninstall/UninstallObstacles.h"

#include <algorithm>

#include "Platform/Text.h"
#include "QuarnCore/move/ChosenVolume.h"
#include "QuarnCore/move/MountPoints.h"
#include "QuarnCore/move/MoverError.h"
#include "QuarnCore/uninstall/ExternalTarget.h"

namespace quarn {
namespace {

/// Returns the copy to which a link or a launcher leads, unless it is chosen. One that can't be looked at may
/// be there, and its path tells what holds it.
std::optional<Sighting> stayingTarget(const ReadOnlyPlatform& platform, const AppRecord& app,
                                      const std::vector<UninstallCandidate>& chosen) {
  const auto target = ExternalTarget::of(app);
  if (!target || !mayExist(platform.files, *target)) return std::nullopt;
  const bool goes = std::any_of(chosen.begin(), chosen.end(), [&](const UninstallCandidate& each) {
    return Text::equal(each.path, target->text());
  });
  return goes ? std::nullopt : std::optional(sight(platform.files, *target));
}

}  // namespace

UninstallObstacles::UninstallObstacles(const ReadOnlyPlatform& platform, const AppRecord& app,
                                       const std::vector<UninstallCandidate>& chosen)
    : platform_(platform),
      app_(app),
      guard_(platform),
      stayingTarget_(stayingTarget(platform, app, chosen)) {}

std::optional<std::string> UninstallObstacles::reasonToStay(const UninstallCandidate& candidate) const {
  const Path item(candidate.path);
  const std::string name = "“" + item.lastComponent() + "”";
  if (!Text::isUTF8(candidate.path)) return name + " can’t be recorded, since its path isn’t UTF-8.";
  const Sighting place = sightItself(platform_.files, item);
  if (place.failure) return place.failure->description;
  if (!guard_.allows(candidate, app_)) return name + " belongs where it is.";
  if (stayingTarget_ && stayingTarget_->isAtOrIn(place))
    return name + " holds the application that stays: " + stayingTarget_->spelled.text();
  try {
    ChosenVolume::requiredFor(platform_, item.parent());
    if (platform_.files.exists(item)) MountPoints::refuseInside(platform_, item);
  } catch (const MoveRefused& refused) {
    return refused.localizedDescription();
  }
  return std::nullopt;
}

}  // namespace quarn
