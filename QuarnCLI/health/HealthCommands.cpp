#include "QuarnCLI/health/HealthCommands.h"

#include "QuarnCLI/Groups.h"

namespace quarn {
namespace {

constexpr const Command* commands[] = {&HealthCommands::check, &HealthCommands::analyze,
                                       &HealthCommands::repair};

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
