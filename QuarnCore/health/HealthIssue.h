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

/// What a kind means to a person, and what its repair does.
struct HealthKindRow {
  HealthIssue::Kind value;
  std::string_view rawValue;
  std::string_view meaning;
  std::string_view repair;  ///< empty if there is none
};

template <>
inline constexpr auto rawValueRows<HealthIssue::Kind> = std::to_array<HealthKindRow>({
    {HealthIssue::Kind::healthy, "healthy", "a link in /Applications leads to a complete application", ""},
    {HealthIssue::Kind::dangling, "dangling",
     "a link leads to nothing: the drive isn't plugged in, or the item was deleted",
     "removes the link, or makes it lead to where the item went when the folder `Quarn` became "
     "`ExternalQuarn`"},
    {HealthIssue::Kind::empty, "empty", "a link leads to a bundle without a property list",
     "removes the link, and takes what is left of the bundle to the Trash; install the application again"},
    {HealthIssue::Kind::corrupted, "corrupted", "a link leads to a bundle without an executable", "the same"},
    {HealthIssue::Kind::reverted, "reverted",
     "what was moved, an application or its data, is real again where its link was; an updater does that. "
     "The copy on the drive may be out of use, gone, or the complete one: look at both",
     "nothing without a choice: `--reclaim-reverted` takes the copy on the drive to the Trash; "
     "`--re-symlink-reverted` does so, too, and moves the item there again"},
    {HealthIssue::Kind::orphan, "orphan", "no link in /Applications leads to an application on the drive",
     "takes the application, and the launchers that open it, to the Trash"},
    {HealthIssue::Kind::missingTrackedFiles, "missingTrackedFiles",
     "the installs database lists files of an application that are gone", "deletes the rows of these files"},
    {HealthIssue::Kind::missingSpotlightLaunchers, "missingSpotlightLaunchers",
     "Spotlight doesn't find the applications in a folder that is a link",
     "makes a launcher in /Applications for each of them"},
    {HealthIssue::Kind::brokenLauncher, "brokenLauncher", "the application that a launcher opens is gone",
     ""},
    {HealthIssue::Kind::signatureBroken, "signatureBroken",
     "the signature or the notarization ticket of a moved application can't be verified; offline, every "
     "stapled "
     "application is reported",
     ""},
    {HealthIssue::Kind::unsafePrefsPlist, "unsafePrefsPlist",
     "a preferences file is a link, which the system replaces by a file at the next change of a preference",
     "moves the file back in the place of the link"},
    {HealthIssue::Kind::sandboxExternalSymlink, "sandboxExternalSymlink",
     "a folder of a sandboxed application is a link to another volume, which the sandbox may not read", ""},
});

}  // namespace quarn
