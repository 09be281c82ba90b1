#include <array>

#include "QuarnCLI/Groups.h"

namespace quarn {
namespace {

constexpr Flag appName{
    .name = "--app-name",
    .kind = ValueKind::text,
    .valueName = "name",
    .meaning = "the application's name; that of the current folder without it",
};
constexpr Flag binSrc{
    .name = "--bin-src",
    .kind = ValueKind::path,
    .valueName = "path",
    .meaning = "where the project's build leaves the application",
};
constexpr Flag defaultDrive{
    .name = "--default-drive",
    .kind = ValueKind::path,
    .valueName = "path",
    .meaning = "the drive that the script installs onto",
};
constexpr Flag force{
    .name = "--force",
    .meaning = "replaces a script that is there",
};
constexpr Flag output{
    .name = "-o",
    .kind = ValueKind::path,
    .valueName = "path",
    .meaning = "where the script is written",
};
constexpr std::array<std::string_view, 7> presets = {"swiftpm", "juce", "xcode", "cmake",
                                                     "make",    "npm",  "auto"};
constexpr Flag preset{
    .name = "--preset",
    .kind = ValueKind::choice,
    .choices = presets,
    .meaning = "how the project is built; found out without it",
};
constexpr Flag flags[] = {appName, binSrc, defaultDrive, force, output, preset};

constexpr Command buildCommand{
    .words = "scaffold build-command",
    .purpose = "writes a script that builds and installs a project",
    .flags = flags,
    .outcomes = {.success = "written", .failure = "a script is there already, or it can't be written"},
    .handler = changesInALaterVersion,
    .usageLine =
        "quarn scaffold build-command [--app-name <Name>] [--bin-src <path>] [--default-drive <path>] "
        "[--force] [-o <path>]",
};

constexpr const Command* commands[] = {&buildCommand};

}  // namespace

constinit const Group scaffoldGroup{
    .words = "scaffold",
    .missingAction =
        "Usage:\n"
        "  scaffold build-command [--app-name <Name>] [--bin-src <path>] [--default-drive <path>] "
        "[--force] [-o <path>]\n"
        "\n"
        "Generates a build.command in the current directory (or -o path) that supports:\n"
        "  ./build.command                              install to /Applications/<Name>.app\n"
        "  ./build.command --external-drive=/Volumes/X9\n"
        "                                               install to "
        "/Volumes/X9/ExternalQuarn/Apps/<Name>.app\n"
        "                                               and symlink /Applications/<Name>.app -> that path\n"
        "  ./build.command --no-install                 build only, no deploy\n"
        "  ./build.command --app-name=Other             override app name for this run",
    .unknownAction = "Unknown scaffold subcommand: ",
    .commands = commands,
};

}  // namespace quarn
