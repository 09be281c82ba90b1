#include "QuarnCLI/Groups.h"
#include "QuarnCLI/install/InstallFlags.h"
#include "QuarnCLI/report/ReportFlags.h"

namespace quarn {
namespace {

using namespace InstallFlags;
using ReportFlags::format;

constexpr Operand source{.name = "<source>"};
constexpr Operand sessionId{.name = "<session-id>"};

constexpr Flag reportFlags[] = {format};
constexpr Flag planFlags[] = {option, targetDrive, applicationLinkRoot, format};
constexpr Flag runFlags[] = {option, targetDrive, applicationLinkRoot, useGantrix, progress, verbose, format};

constexpr Command options{
    .words = "install options",
    .purpose = "lists the install options",
    .flags = reportFlags,
    .outcomes = {.success = "listed", .failure = ""},
    .handler = looksInALaterVersion,
    .usageLine = "quarn install options [--format tsv|toml]",
};

constexpr Command inspect{
    .words = "install inspect",
    .purpose = "shows what a source holds, and whether it is to be trusted",
    .operand = source,
    .flags = reportFlags,
    .outcomes = {.success = "shown", .failure = "no source"},
    .handler = looksInALaterVersion,
    .usageLine = "quarn install inspect <source> [--format tsv|toml]",
};

constexpr Command plan{
    .words = "install plan",
    .purpose = "shows what `install run` would do",
    .operand = source,
    .flags = planFlags,
    .outcomes = {.success = "shown", .failure = "no source, no such option, or no drive given"},
    .handler = looksInALaterVersion,
    .usageLine = "quarn install plan <source> --option <id> --target-drive <path>",
};

constexpr Command run{
    .words = "install run",
    .purpose = "installs from a source onto a drive, and records what changed",
    .operand = source,
    .flags = runFlags,
    .outcomes = {.success = "installed",
                 .failure = "no source, no such option, no drive given, or the installation failed"},
    .handler = changesInALaterVersion,
    .usageLine =
        "quarn install run <source> --option <id> --target-drive <path> [--use-gantrix] [--progress]",
};

constexpr Command sessions{
    .words = "install sessions",
    .purpose = "lists the recorded installations",
    .flags = reportFlags,
    .outcomes = {.success = "listed", .failure = ""},
    .handler = looksInALaterVersion,
    .usageLine = "quarn install sessions [--format tsv]",
};

constexpr Command pending{
    .words = "install pending",
    .purpose = "lists the installations whose applications have not all reached the drive",
    .outcomes = {.success = "listed", .failure = ""},
    .handler = looksInALaterVersion,
    .usageLine = "quarn install pending                 # list sessions awaiting externalize",
};

constexpr TellingLine resumeLines[] = {
    {"session\t…\tfailed", "it failed"},
    {"session\t…\tpartial — some apps still pending", "some applications have not reached the drive"},
    {"pending\t…", "one of them"},
};
constexpr Command resume{
    .words = "install resume",
    .purpose = "finishes an installation that was broken off",
    .operand = sessionId,
    .outcomes = {.success = "looked after; the line tells how it went", .failure = "anything else"},
    .tellingLines = resumeLines,
    .handler = changesInALaterVersion,
    .usageLine = "quarn install resume <session-id>     # finish externalize for a killed install",
};

constexpr Command uninstallPlan{
    .words = "install uninstall-plan",
    .purpose = "shows what `install uninstall` would do",
    .operand = sessionId,
    .outcomes = {.success = "shown", .failure = "no such session"},
    .handler = looksInALaterVersion,
    .usageLine = "quarn install uninstall-plan <session-id>",
};

constexpr Command uninstall{
    .words = "install uninstall",
    .purpose = "sets aside what an installation brought",
    .operand = sessionId,
    .outcomes = {.success = "done", .failure = "no such session, or anything else"},
    .handler = changesInALaterVersion,
};

constexpr const Command* commands[] = {
    &options, &inspect, &plan, &run, &sessions, &pending, &resume, &uninstallPlan, &uninstall,
};

}  // namespace

constinit const Group installGroup{
    .words = "install",
    .missingAction = "Missing install action.",
    .unknownAction = "Unknown install action: ",
    .commands = commands,
};

}  // namespace quarn
