#include "QuarnCLI/FlagNames.h"
#include "QuarnCLI/Groups.h"
#include "QuarnCLI/report/ReportFlags.h"

namespace quarn {
namespace {

constexpr Flag dryRun{
    .name = FlagNames::dryRun,
    .meaning = "changes nothing, also with --yes",
};
constexpr Flag yes{
    .name = FlagNames::yes,
    .meaning = "removes; without it nothing is changed",
};

constexpr Flag reportFlags[] = {ReportFlags::format};
constexpr Flag runFlags[] = {dryRun, yes, ReportFlags::format};
constexpr Outcomes scanOutcomes{
    .success = "no duplicates", .failure = "", .attention = "duplicates were found"};

constexpr Command scan{
    .words = "dedupe scan",
    .purpose = "lists the duplicates among the launchers",
    .flags = reportFlags,
    .outcomes = scanOutcomes,
    .handler = looksInALaterVersion,
    .usageLine = "quarn dedupe scan      [--format human|tsv|toml]",
};

constexpr Command run{
    .words = "dedupe run",
    .purpose = "takes the duplicates to the Trash",
    .flags = runFlags,
    .outcomes = {.success = "removed, or nothing to remove", .failure = "an item could not be removed"},
    .handler = changesInALaterVersion,
    .usageLine = "quarn dedupe run       [--dry-run] [--yes] [--format human|tsv|toml]",
};

constexpr Command plan{
    .words = "dedupe plan",
    .purpose = "the same as `dedupe scan`",
    .flags = reportFlags,
    .outcomes = scanOutcomes,
    .handler = looksInALaterVersion,
};

constexpr const Command* commands[] = {&scan, &run, &plan};

}  // namespace

constinit const Group dedupeGroup{
    .words = "dedupe",
    .missingAction =
        "Usage:\n"
        "  dedupe scan [--format human|tsv|toml]\n"
        "  dedupe plan [--format human|tsv|toml]\n"
        "  dedupe run  [--dry-run] [--yes] [--format human|tsv|toml]",
    .unknownAction = "Unknown dedupe action: ",
    .commands = commands,
};

}  // namespace quarn
