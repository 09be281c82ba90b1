#include "QuarnCLI/Groups.h"
#include "QuarnCLI/health/HealthFlags.h"
#include "QuarnCLI/report/ReportFlags.h"

namespace quarn {
namespace {

using namespace HealthFlags;

constexpr Flag reportFlags[] = {ReportFlags::format};
constexpr Command check{
    .words = "health check",
    .purpose = "looks whether what was moved still works",
    .flags = reportFlags,
    .outcomes = {.success = "no problems", .failure = "", .attention = "problems were found"},
    .handler = looksInALaterVersion,
    .usageLine = "quarn health check     [--format human|tsv|toml]",
};

constexpr Command analyze{
    .words = "health analyze",
    .purpose = "does the same, and counts the space",
    .flags = reportFlags,
    .outcomes = {.success = "shown, whatever was found", .failure = ""},
    .handler = looksInALaterVersion,
    .usageLine = "quarn health analyze   [--format human|tsv|toml]",
};

constexpr Flag repairFlags[] = {
    dryRun,
    yes,
    removeOrphans,
    removeEmpty,
    removeDangling,
    reSymlinkReverted,
    reclaimReverted,
    noSnapshot,
    repairSpotlightLaunchers,
    forgetMissingTrackedFiles,
    restoreUnsafePrefs,
};
constexpr TellingLine repairLines[] = {
    {"  FAIL: …", "a repair failed"},
    {"  WARN: could not trash …", "an item stayed where it is"},
};
constexpr Command repair{
    .words = "health repair",
    .purpose = "offers the repair of each problem",
    .flags = repairFlags,
    .outcomes = {.success = "gone through, whatever failed", .failure = "flags that exclude each other"},
    .tellingLines = repairLines,
    .handler = changesInALaterVersion,
    .usageLine =
        "quarn health repair    [--dry-run] [--yes] [--remove-orphans] [--remove-empty] [--remove-dangling] "
        "[--re-symlink-reverted | --reclaim-reverted] [--repair-spotlight-launchers] [--no-snapshot]",
};

constexpr const Command* commands[] = {&check, &analyze, &repair};

}  // namespace

constinit const Group healthGroup{
    .words = "health",
    .missingAction =
        "Usage:\n"
        "  health check     [--format human|tsv|toml]\n"
        "  health analyze   [--format human|tsv|toml]\n"
        "  health repair    [--dry-run] [--yes] [--remove-orphans] [--remove-empty]\n"
        "                   [--re-symlink-reverted | --reclaim-reverted]\n"
        "                   [--remove-dangling] [--forget-missing-tracked-files]\n"
        "                   [--repair-spotlight-launchers]",
    .unknownAction = "Unknown health subcommand: ",
    .commands = commands,
};

}  // namespace quarn
