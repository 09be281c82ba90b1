#include "QuarnCLI/dispatch/CommandTable.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "QuarnCLI/CLIError.h"
#include "QuarnCLI/move/MoveCommands.h"
#include "QuarnCLI/snapshot/SnapshotCommands.h"

namespace quarn::CommandTable {
namespace {

struct Group {
  std::string_view words;
  std::string_view missingAction;  ///< the whole message
  std::string_view unknownAction;  ///< the word follows
};

constexpr std::array groups = {
    Group{"install", "Missing install action.", "Unknown install action: "},
    Group{"install plugins", "Missing plugins action. Try: inspect | install", "Unknown plugins action: "},
    Group{"uninstall", "Missing uninstall action.", "Unknown uninstall action: "},
    Group{"backup", "Missing backup action.", "Unknown backup action: "},
    Group{"move", "Missing move action.", "Unknown move action: "},
    Group{"health",
          "Usage:\n"
          "  health check     [--format human|tsv|toml]\n"
          "  health analyze   [--format human|tsv|toml]\n"
          "  health repair    [--dry-run] [--yes] [--remove-orphans] [--remove-empty]\n"
          "                   [--re-symlink-reverted | --reclaim-reverted]\n"
          "                   [--remove-dangling] [--forget-missing-tracked-files]\n"
          "                   [--repair-spotlight-launchers]",
          "Unknown health subcommand: "},
    Group{"dedupe",
          "Usage:\n"
          "  dedupe scan [--format human|tsv|toml]\n"
          "  dedupe plan [--format human|tsv|toml]\n"
          "  dedupe run  [--dry-run] [--yes] [--format human|tsv|toml]",
          "Unknown dedupe action: "},
    Group{"snapshot",
          "Usage:\n"
          "  snapshot create\n"
          "  snapshot list",
          "Unknown snapshot subcommand: "},
    Group{"scaffold",
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
          "Unknown scaffold subcommand: "},
};

struct Command {
  std::string_view group;
  std::string_view action;
  Handler handler;             ///< none: this version doesn't have it
  std::string_view usageLine;  ///< empty: left out of the usage text
};

constexpr std::array commands = std::to_array<Command>({
    {"install", "options", nullptr, "quarn install options [--format tsv|toml]"},
    {"install", "inspect", nullptr, "quarn install inspect <source> [--format tsv|toml]"},
    {"install", "plan", nullptr, "quarn install plan <source> --option <id> --target-drive <path>"},
    {"install", "run", nullptr,
     "quarn install run <source> --option <id> --target-drive <path> [--use-gantrix] [--progress]"},
    {"install", "sessions", nullptr, "quarn install sessions [--format tsv]"},
    {"install", "pending", nullptr,
     "quarn install pending                 # list sessions awaiting externalize"},
    {"install", "resume", nullptr,
     "quarn install resume <session-id>     # finish externalize for a killed install"},
    {"install", "uninstall-plan", nullptr, "quarn install uninstall-plan <session-id>"},
    {"install plugins", "inspect", nullptr,
     "quarn install plugins inspect <source> [--formats au,vst3,vst,clap,aax] [--format human|tsv]"},
    {"install plugins", "install", nullptr,
     "quarn install plugins install <source> --target-drive <path> [--formats au,vst3,vst,clap,aax] "
     "[--dry-run] [--yes] [--no-overwrite]"},
    {"uninstall", "apps", nullptr, "quarn uninstall apps [--format tsv|toml]"},
    {"uninstall", "inspect", nullptr, "quarn uninstall inspect <app-path> [--format tsv|toml]"},
    {"uninstall", "plan", nullptr,
     "quarn uninstall plan <app-path> "
     "[--include-data|--include-caches|--include-logs|--include-prefs|--include-containers|--include-"
     "receipts|--include-launch-agents|--include-launch-daemons|--include-external-target|--executable-only] "
     "[--format tsv|toml]"},
    {"uninstall", "run", nullptr,
     "quarn uninstall run <app-path> [--dry-run] [include flags] [--format tsv|toml] [--progress]"},
    {"uninstall", "sessions", nullptr, "quarn uninstall sessions [--format tsv|toml]"},
    {"backup", "create", nullptr, "quarn backup create --target-drive <path>"},
    {"backup", "list", nullptr, "quarn backup list --target-drive <path>"},
    {"move", "drives", MoveDrivesCommand::run, "quarn move drives"},
    {"move", "apps", MoveAppsCommand::run, "quarn move apps [--all]"},
    {"move", "plan", MovePlanCommand::run,
     "quarn move plan [--target-drive <path>] [--no-data] [--include-risky] [--include-protected]"},
    {"move", "all", MoveAllCommand::run,
     "quarn move all  [--target-drive <path>] [--no-data] [--include-risky] [--include-protected] "
     "[--dry-run] [--yes] [--progress] [--quit-running] [--no-snapshot]"},
    {"move", "next", MoveNextCommand::run,
     "quarn move next [--target-drive <path>] [--no-data] [--include-risky] [--include-protected] "
     "[--include-running] [--largest-first] [--yes] [--progress] [--quit-running]   # one app, exits 0=ok "
     "2=drained 1=fail"},
    {"move", "one", MoveOneCommand::run,
     "quarn move one  <bundle-path|bundle-id> [--target-drive <path>] [--no-data] [--yes] [--progress] "
     "[--quit-running]"},
    {"move", "path", MovePathCommand::run,
     "quarn move path --source <path> --destination <path> [--yes] [--progress]"},
    {"move", "restore", MoveRestoreCommand::run, "quarn move restore <symlink-path>"},
    {"move", "back", MoveBackCommand::run,
     "quarn move back <app-name|symlink-path>   # friendly alias; accepts e.g. \"Little Snitch.app\""},
    {"health", "check", nullptr, "quarn health check     [--format human|tsv|toml]"},
    {"health", "analyze", nullptr, "quarn health analyze   [--format human|tsv|toml]"},
    {"health", "repair", nullptr,
     "quarn health repair    [--dry-run] [--yes] [--remove-orphans] [--remove-empty] [--remove-dangling] "
     "[--re-symlink-reverted | --reclaim-reverted] [--repair-spotlight-launchers] [--no-snapshot]"},
    {"dedupe", "scan", nullptr, "quarn dedupe scan      [--format human|tsv|toml]"},
    {"dedupe", "run", nullptr, "quarn dedupe run       [--dry-run] [--yes] [--format human|tsv|toml]"},
    {"snapshot", "create", SnapshotCreateCommand::run, "quarn snapshot create   # tmutil localsnapshot of /"},
    {"snapshot", "list", SnapshotListCommand::run, "quarn snapshot list"},
    {"scaffold", "build-command", nullptr,
     "quarn scaffold build-command [--app-name <Name>] [--bin-src <path>] [--default-drive <path>] [--force] "
     "[-o <path>]"},
    {"dedupe", "plan", nullptr, ""},
    {"install", "uninstall", nullptr, ""},
});

const Group* groupNamed(std::string_view words) {
  const auto found = std::find_if(groups.begin(), groups.end(),
                                  [words](const Group& group) { return group.words == words; });
  return found == groups.end() ? nullptr : &*found;
}

const Command* commandNamed(const Group& group, std::string_view action) {
  const auto found = std::find_if(commands.begin(), commands.end(), [&](const Command& command) {
    return command.group == group.words && command.action == action;
  });
  return found == commands.end() ? nullptr : &*found;
}

/// `position` is that of the action among the words.
Match findInGroup(const Group& group, const std::vector<std::string>& words, std::size_t position) {
  if (words.size() <= position) throw CLIError(std::string(group.missingAction));
  const std::string& action = words[position];
  const std::string both = std::string(group.words) + " " + action;
  if (const Group* inner = groupNamed(both)) return findInGroup(*inner, words, position + 1);
  const Command* command = commandNamed(group, action);
  if (!command) throw CLIError(std::string(group.unknownAction) + action);
  if (!command->handler) throw CLIError("This version of quarn does not have the command: " + both);
  return {command->handler, {{words.begin() + static_cast<std::ptrdiff_t>(position) + 1, words.end()}}};
}

}  // namespace

Match find(const std::vector<std::string>& words) {
  const Group* group = groupNamed(words.front());
  if (!group || group->words.find(' ') != std::string_view::npos) {
    throw CLIError("Unknown command: " + words.front());
  }
  return findInGroup(*group, words, 1);
}

std::string usage() {
  std::string text;
  for (const Command& command : commands) {
    if (command.usageLine.empty()) continue;
    if (!text.empty()) text += '\n';
    text += command.usageLine;
  }
  return text;
}

}  // namespace quarn::CommandTable
