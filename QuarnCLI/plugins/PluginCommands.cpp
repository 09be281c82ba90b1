#include <array>

#include "QuarnCLI/FlagNames.h"
#include "QuarnCLI/Groups.h"

namespace quarn {
namespace {

constexpr std::array<std::string_view, 6> pluginFormats = {"au", "vst3", "vst", "clap", "aax", "all"};
constexpr Flag formats{
    .name = "--formats",
    .kind = ValueKind::list,
    .choices = pluginFormats,
    .meaning = "the kinds of plug-in; all of them without it",
};
constexpr std::array<std::string_view, 2> inspectForms = {"human", "tsv"};
constexpr Flag inspectFormat{
    .name = FlagNames::format,
    .kind = ValueKind::choice,
    .choices = inspectForms,
    .meaning = "the form of the report",
};
constexpr Flag targetDrive{
    .name = FlagNames::targetDrive,
    .kind = ValueKind::path,
    .valueName = "path",
    .isRequired = true,
    .meaning = "the drive to install onto",
};
constexpr Flag dryRun{
    .name = FlagNames::dryRun,
    .meaning = "shows the plan and writes nothing, also with --yes",
};
constexpr Flag yes{
    .name = FlagNames::yes,
    .meaning = "installs; without it nothing is written",
};
constexpr Flag noOverwrite{
    .name = "--no-overwrite",
    .meaning = "passes over what is there already",
};

constexpr Operand source{.name = "<source>"};

constexpr Flag inspectFlags[] = {formats, inspectFormat};
constexpr TellingLine inspectLines[] = {{"No plugin bundles found.", ""}};
constexpr Command inspect{
    .words = "install plugins inspect",
    .purpose = "lists the audio plug-ins of a source",
    .operand = source,
    .flags = inspectFlags,
    .outcomes = {.success = "listed", .failure = "no source, or an unknown kind of plug-in"},
    .tellingLines = inspectLines,
    .handler = looksInALaterVersion,
    .usageLine =
        "quarn install plugins inspect <source> [--formats au,vst3,vst,clap,aax] [--format human|tsv]",
};

constexpr Flag installFlags[] = {targetDrive, formats, dryRun, yes, noOverwrite};
constexpr TellingLine installLines[] = {
    {"No plugin bundles found at …", ""},
    {"--dry-run: nothing written.", ""},
    {"Proceed? Re-run with --yes to install.", "nothing was written"},
    {"  [skipped] …", "one that was passed over"},
};
constexpr Command install{
    .words = "install plugins install",
    .purpose = "installs the audio plug-ins of a source onto a drive",
    .operand = source,
    .flags = installFlags,
    .outcomes = {.success = "installed, nothing to install, or not asked to",
                 .failure = "no source, no drive, an unknown kind of plug-in, or one that failed"},
    .tellingLines = installLines,
    .handler = changesInALaterVersion,
    .usageLine =
        "quarn install plugins install <source> --target-drive <path> "
        "[--formats au,vst3,vst,clap,aax] [--dry-run] [--yes] [--no-overwrite]",
};

constexpr const Command* commands[] = {&inspect, &install};

}  // namespace

constinit const Group installPluginsGroup{
    .words = "install plugins",
    .missingAction = "Missing plugins action. Try: inspect | install",
    .unknownAction = "Unknown plugins action: ",
    .commands = commands,
};

}  // namespace quarn
