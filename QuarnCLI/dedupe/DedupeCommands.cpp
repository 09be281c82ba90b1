#include "QuarnCLI/dedupe/DedupeCommands.h"

#include "QuarnCLI/Groups.h"

namespace quarn {
namespace {

constexpr const Command* commands[] = {&DedupeCommands::scan, &DedupeCommands::run, &DedupeCommands::plan};

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
