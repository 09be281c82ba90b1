#include "QuarnCLI/scaffold/ScaffoldCommands.h"

#include "QuarnCLI/Groups.h"

namespace quarn {
namespace {

constexpr const Command* commands[] = {&ScaffoldCommands::buildCommand};

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
