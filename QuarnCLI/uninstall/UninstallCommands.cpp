#include "QuarnCLI/Groups.h"
#include "QuarnCLI/report/ReportFlags.h"
#include "QuarnCLI/uninstall/UninstallFlags.h"

namespace quarn {
namespace {

using namespace UninstallFlags;
using ReportFlags::format;

constexpr Operand appPath{.name = "<app-path>"};

constexpr Flag reportFlags[] = {format};
constexpr Flag planFlags[] = {
    includeData,
    includeCaches,
    includeLogs,
    includePrefs,
    includeContainers,
    includeReceipts,
    includeLaunchAgents,
    includeLaunchDaemons,
    includeExternalTarget,
    executableOnly,
    minimal,
    format,
};
constexpr Flag runFlags[] = {
    dryRun,
    includeData,
    includeCaches,
    includeLogs,
    includePrefs,
    includeContainers,
    includeReceipts,
    includeLaunchAgents,
    includeLaunchDaemons,
    includeExternalTarget,
    executableOnly,
    minimal,
    format,
    progress,
    verbose,
};

constexpr Command apps{
    .words = "uninstall apps",
    .purpose = "lists the installed applications",
    .flags = reportFlags,
    .outcomes = {.success = "listed", .failure = ""},
    .handler = looksInALaterVersion,
    .usageLine = "quarn uninstall apps [--format tsv|toml]",
};

constexpr Command inspect{
    .words = "uninstall inspect",
    .purpose = "shows what is known of an application",
    .operand = appPath,
    .flags = reportFlags,
    .outcomes = {.success = "shown", .failure = "no such application"},
    .handler = looksInALaterVersion,
    .usageLine = "quarn uninstall inspect <app-path> [--format tsv|toml]",
};

constexpr Command plan{
    .words = "uninstall plan",
    .purpose = "shows what `uninstall run` would take",
    .operand = appPath,
    .flags = planFlags,
    .outcomes = {.success = "shown", .failure = "no such application"},
    .handler = looksInALaterVersion,
    .usageLine =
        "quarn uninstall plan <app-path> "
        "[--include-data|--include-caches|--include-logs|--include-prefs|--include-containers|--include-"
        "receipts|--include-launch-agents|--include-launch-daemons|--include-external-target|--executable-"
        "only] "
        "[--format tsv|toml]",
};

constexpr Command run{
    .words = "uninstall run",
    .purpose = "takes an application and what belongs to it to the Trash",
    .operand = appPath,
    .flags = runFlags,
    .outcomes = {.success = "carried out; the report tells of each item", .failure = "no such application"},
    .handler = changesInALaterVersion,
    .usageLine =
        "quarn uninstall run <app-path> [--dry-run] [include flags] [--format tsv|toml] [--progress]",
};

constexpr Command sessions{
    .words = "uninstall sessions",
    .purpose = "lists the recorded removals",
    .flags = reportFlags,
    .outcomes = {.success = "listed", .failure = ""},
    .handler = looksInALaterVersion,
    .usageLine = "quarn uninstall sessions [--format tsv|toml]",
};

constexpr const Command* commands[] = {&apps, &inspect, &plan, &run, &sessions};

}  // namespace

constinit const Group uninstallGroup{
    .words = "uninstall",
    .missingAction = "Missing uninstall action.",
    .unknownAction = "Unknown uninstall action: ",
    .commands = commands,
};

}  // namespace quarn
