#include <gtest/gtest.h>

#include "tests/cli/Expected.h"

using namespace expected;
using scene::quarn;

namespace {

const std::string usage =
    "quarn install options [--format tsv|toml]\n"
    "quarn install inspect <source> [--format tsv|toml]\n"
    "quarn install plan <source> --option <id> --target-drive <path>\n"
    "quarn install run <source> --option <id> --target-drive <path> [--use-gantrix] [--progress]\n"
    "quarn install sessions [--format tsv]\n"
    "quarn install pending                 # list sessions awaiting externalize\n"
    "quarn install resume <session-id>     # finish externalize for a killed install\n"
    "quarn install uninstall-plan <session-id>\n"
    "quarn install plugins inspect <source> [--formats au,vst3,vst,clap,aax] [--format human|tsv]\n"
    "quarn install plugins install <source> --target-drive <path> [--formats au,vst3,vst,clap,aax] "
    "[--dry-run] [--yes] [--no-overwrite]\n"
    "quarn uninstall apps [--format tsv|toml]\n"
    "quarn uninstall inspect <app-path> [--format tsv|toml]\n"
    "quarn uninstall plan <app-path> [--include-data|--include-caches|--include-logs|--include-prefs|"
    "--include-containers|--include-receipts|--include-launch-agents|--include-launch-daemons|"
    "--include-external-target|--executable-only] [--format tsv|toml]\n"
    "quarn uninstall run <app-path> [--dry-run] [include flags] [--format tsv|toml] [--progress]\n"
    "quarn uninstall sessions [--format tsv|toml]\n"
    "quarn backup create --target-drive <path>\n"
    "quarn backup list --target-drive <path>\n"
    "quarn move drives\n"
    "quarn move apps [--all]\n"
    "quarn move plan [--target-drive <path>] [--no-data] [--include-risky] [--include-protected]\n"
    "quarn move all  [--target-drive <path>] [--no-data] [--include-risky] [--include-protected] "
    "[--dry-run] [--yes] [--progress] [--quit-running] [--no-snapshot]\n"
    "quarn move next [--target-drive <path>] [--no-data] [--include-risky] [--include-protected] "
    "[--include-running] [--largest-first] [--yes] [--progress] [--quit-running]   "
    "# one app, exits 0=ok 2=drained 1=fail\n"
    "quarn move one  <bundle-path|bundle-id> [--target-drive <path>] [--no-data] [--yes] [--progress] "
    "[--quit-running]\n"
    "quarn move path --source <path> --destination <path> [--yes] [--progress]\n"
    "quarn move restore <symlink-path>\n"
    "quarn move back <app-name|symlink-path>   # friendly alias; accepts e.g. \"Little Snitch.app\"\n"
    "quarn health check     [--format human|tsv|toml]\n"
    "quarn health analyze   [--format human|tsv|toml]\n"
    "quarn health repair    [--dry-run] [--yes] [--remove-orphans] [--remove-empty] [--remove-dangling] "
    "[--re-symlink-reverted | --reclaim-reverted] [--repair-spotlight-launchers] [--no-snapshot]\n"
    "quarn dedupe scan      [--format human|tsv|toml]\n"
    "quarn dedupe run       [--dry-run] [--yes] [--format human|tsv|toml]\n"
    "quarn snapshot create   # tmutil localsnapshot of /\n"
    "quarn snapshot list\n"
    "quarn scaffold build-command [--app-name <Name>] [--bin-src <path>] [--default-drive <path>] "
    "[--force] [-o <path>]\n";

TEST(Usage, noArgumentsPrintTheUsageText) {
  EXPECT_EQ(shown(quarn({})), printed(usage));
}

TEST(Usage, theThreeHelpWordsPrintTheUsageText) {
  for (const std::string word : {"help", "--help", "-h"}) {
    EXPECT_EQ(shown(quarn({word})), printed(usage));
    EXPECT_EQ(shown(quarn({word, "move", "nonsense"})), printed(usage)) << "whatever follows";
  }
}

TEST(Usage, aHelpWordBehindAGroupIsAnUnknownAction) {
  EXPECT_EQ(shown(quarn({"move", "help"})), failed("Unknown move action: help"));
}

}  // namespace
