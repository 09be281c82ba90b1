#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "Platform/Path.h"
#include "QuarnCore/foundation/RawValues.h"

namespace quarn {

/// One finding of the health check. A link that works is a finding, too.
struct HealthIssue {
  enum class Kind {
    healthy,
    dangling,                   ///< a link to nothing
    empty,                      ///< a link to a bundle without a property list
    corrupted,                  ///< a link to a bundle without an executable
    reverted,                   ///< an updater put a real bundle in the place of a link
    orphan,                     ///< a bundle on a drive that nothing leads to
    missingTrackedFiles,        ///< the ledger lists files that are gone
    missingSpotlightLaunchers,  ///< applications in a folder that is a link can't be found by Spotlight
    brokenLauncher,             ///< a launcher whose application is gone
    signatureBroken,            ///< the signature or the notarization ticket can't be verified
    unsafePrefsPlist,           ///< a preferences file is a link
    sandboxExternalSymlink,     ///< a sandbox's folder is a link to another volume
  };

  Kind kind = Kind::healthy;
  Path location;               ///< what the finding is about: a link, launcher, bundle or file
  std::optional<Path> target;  ///< what `location` leads to or is paired with
  std::string detail;          ///< a sentence for the user; empty if healthy
  std::int64_t sizeBytes = 0;  ///< 0 where nothing is measured
  bool operator==(const HealthIssue&) const = default;
};

template <>
inline constexpr auto rawValueRows<HealthIssue::Kind> = std::to_array<RawValueRow<HealthIssue::Kind>>({
    {HealthIssue::Kind::healthy, "healthy"},
    {HealthIssue::Kind::dangling, "dangling"},
    {HealthIssue::Kind::empty, "empty"},
    {HealthIssue::Kind::corrupted, "corrupted"},
    {HealthIssue::Kind::reverted, "reverted"},
    {HealthIssue::Kind::orphan, "orphan"},
    {HealthIssue::Kind::missingTrackedFiles, "missingTrackedFiles"},
    {HealthIssue::Kind::missingSpotlightLaunchers, "missingSpotlightLaunchers"},
    {HealthIssue::Kind::brokenLauncher, "brokenLauncher"},
    {HealthIssue::Kind::signatureBroken, "signatureBroken"},
    {HealthIssue::Kind::unsafePrefsPlist, "unsafePrefsPlist"},
    {HealthIssue::Kind::sandboxExternalSymlink, "sandboxExternalSymlink"},
});

}  // namespace quarn
