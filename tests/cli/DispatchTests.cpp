#include <gtest/gtest.h>

#include "tests/cli/Expected.h"

using namespace expected;
using scene::quarn;

namespace {

using Words = std::vector<std::string>;

std::string joined(const Words& words) {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : " ") + word;
  return text;
}

TEST(Dispatch, anUnknownFirstWordIsNamed) {
  for (const std::string word : {"mvoe", "MOVE", "--version", "--Help", "-v", "", "move drives",
                                 "install plugins", "plugins", "Help", "-help"}) {
    EXPECT_EQ(shown(quarn({word})), failed("Unknown command: " + word));
  }
}

TEST(Dispatch, aGroupWithoutAnActionSaysSo) {
  const std::pair<Words, std::string> rows[] = {
      {{"install"}, "Missing install action."},
      {{"install", "plugins"}, "Missing plugins action. Try: inspect | install"},
      {{"uninstall"}, "Missing uninstall action."},
      {{"backup"}, "Missing backup action."},
      {{"move"}, "Missing move action."},
  };
  for (const auto& [words, message] : rows) EXPECT_EQ(shown(quarn(words)), failed(message));
}

TEST(Dispatch, healthAloneGivesItsUsageAsAnError) {
  EXPECT_EQ(shown(quarn({"health"})),
            failed("Usage:\n"
                   "  health check     [--format human|tsv|toml]\n"
                   "  health analyze   [--format human|tsv|toml]\n"
                   "  health repair    [--dry-run] [--yes] [--remove-orphans] [--remove-empty]\n"
                   "                   [--re-symlink-reverted | --reclaim-reverted]\n"
                   "                   [--remove-dangling] [--forget-missing-tracked-files]\n"
                   "                   [--repair-spotlight-launchers]"));
}

TEST(Dispatch, dedupeAloneGivesItsUsageAsAnError) {
  EXPECT_EQ(shown(quarn({"dedupe"})), failed("Usage:\n"
                                             "  dedupe scan [--format human|tsv|toml]\n"
                                             "  dedupe plan [--format human|tsv|toml]\n"
                                             "  dedupe run  [--dry-run] [--yes] [--format human|tsv|toml]"));
}

TEST(Dispatch, snapshotAloneGivesItsUsageAsAnError) {
  EXPECT_EQ(shown(quarn({"snapshot"})), failed("Usage:\n  snapshot create\n  snapshot list"));
}

TEST(Dispatch, scaffoldAloneGivesItsUsageAsAnError) {
  EXPECT_EQ(
      shown(quarn({"scaffold"})),
      failed("Usage:\n"
             "  scaffold build-command [--app-name <Name>] [--bin-src <path>] [--default-drive <path>] "
             "[--force] [-o <path>]\n"
             "\n"
             "Generates a build.command in the current directory (or -o path) that supports:\n"
             "  ./build.command                              install to /Applications/<Name>.app\n"
             "  ./build.command --external-drive=/Volumes/X9\n"
             "                                               install to "
             "/Volumes/X9/ExternalQuarn/Apps/<Name>.app\n"
             "                                               and symlink /Applications/<Name>.app -> that "
             "path\n"
             "  ./build.command --no-install                 build only, no deploy\n"
             "  ./build.command --app-name=Other             override app name for this run"));
}

TEST(Dispatch, anUnknownActionIsNamed) {
  const std::pair<Words, std::string> rows[] = {
      {{"install", "x"}, "Unknown install action: x"},
      {{"install", "--help"}, "Unknown install action: --help"},
      {{"install", "plugins inspect"}, "Unknown install action: plugins inspect"},
      {{"install", "plugins", "x"}, "Unknown plugins action: x"},
      {{"uninstall", "x"}, "Unknown uninstall action: x"},
      {{"backup", "x", "--target-drive", "/Volumes/X9"}, "Unknown backup action: x"},
      {{"backup", "x"}, "Missing --target-drive."},
      {{"backup", "x", "--target-drive"}, "Missing --target-drive."},
      {{"backup", "x", "--target-drive", ""}, "Missing --target-drive."},
      {{"backup", "--target-drive", "/Volumes/X9"}, "Unknown backup action: --target-drive"},
      {{"move", "x"}, "Unknown move action: x"},
      {{"move", "Drives"}, "Unknown move action: Drives"},
      {{"move", ""}, "Unknown move action: "},
      {{"move", "--yes", "one"}, "Unknown move action: --yes"},
      {{"health", "x"}, "Unknown health subcommand: x"},
      {{"dedupe", "x"}, "Unknown dedupe action: x"},
      {{"snapshot", "x"}, "Unknown snapshot subcommand: x"},
      {{"scaffold", "x"}, "Unknown scaffold subcommand: x"},
  };
  for (const auto& [words, message] : rows) EXPECT_EQ(shown(quarn(words)), failed(message));
}

TEST(Dispatch, eachActionReachesItsCommand) {
  const std::pair<Words, std::string> failing[] = {
      {{"move", "one"},
       "Usage: move one <bundle-path|bundle-id> [--target-drive <path>] [--no-data] [--yes] [--progress]"},
      {{"move", "path"}, "Usage: move path --source <path> --destination <path> [--yes] [--progress]"},
      {{"move", "restore"}, "Usage: move restore <symlink-path>"},
      {{"move", "back"},
       "Usage: move back <app-name|symlink-path>\n"
       "  e.g. move back 'Little Snitch.app'\n"
       "       move back /Applications/Capo.app"},
      {{"backup", "create"}, "Missing --target-drive."},
      {{"backup", "list"}, "Missing --target-drive."},
      {{"install", "plugins", "inspect"},
       "Usage: install plugins inspect <source> [--formats au,vst3,...] [--format human|tsv]"},
      {{"install", "plugins", "install", "/Users/me"}, "--target-drive <path> is required."},
      {{"move", "plan", "--target-drive", "none"},
       "Target drive not found: none. Run `move drives` to list mounts."},
  };
  for (const auto& [words, message] : failing) EXPECT_EQ(shown(quarn(words)), failed(message));
  const std::pair<Words, std::string> printing[] = {
      {{"move", "drives"}, "mount\tname\tinternal\twritable\tfree\ttotal\n"},
      {{"move", "apps"}, "name\tbundle_id\trisk\tapp_size\tdata_size\ttotal\tpath\n"},
      {{"move", "all"}, "target drive: X9 (/Volumes/X9)\n"},
      {{"snapshot", "list"}, "No local snapshots.\n"},
      {{"health", "check"}, "Scanned 0 symlinked apps across 0 external root(s).\n"},
      {{"health", "analyze"}, "Scanned 0 symlinked apps across 0 external root(s).\n"},
      {{"health", "repair"}, "Everything healthy. Nothing to repair.\n"},
      {{"dedupe", "scan"}, "Duplicate launcher groups: 0\n"},
      {{"dedupe", "plan"}, "Duplicate launcher groups: 0\n"},
      {{"dedupe", "run"}, "Duplicate launcher groups: 0\n"},
      {{"snapshot", "create"}, "Created snapshot: com.apple.TimeMachine."},
  };
  for (const auto& [words, start] : printing) {
    const scene::Run run = quarn(words);
    EXPECT_EQ(run.status, 0) << joined(words);
    EXPECT_EQ(run.err, "") << joined(words);
    EXPECT_TRUE(run.out.starts_with(start)) << run.out;
  }
  EXPECT_EQ(shown(quarn({"move", "next"})), shown({2, "nothing eligible to move.\n", ""}));
}

TEST(Dispatch, unknownAndRepeatedFlagsDontMatter) {
  scene::makeApp("/Applications/Plain.app", {.identifier = "com.example.plain"});
  scene::makeApp("/Applications/Risky.app", {.identifier = "com.example.risky"});
  scene::makeFolder("/Applications/Risky.app/Contents/Library/SystemExtensions/Inner.systemextension");
  const std::string plain = shown(quarn({"move", "apps"}));
  const std::string all = shown(quarn({"move", "apps", "--all"}));
  ASSERT_NE(plain.find("Plain.app"), std::string::npos);
  ASSERT_EQ(plain.find("Risky.app"), std::string::npos);
  ASSERT_NE(all.find("Risky.app"), std::string::npos);
  const Words unknown = {"move",      "apps",     "--nonsense", "--ALL", "-all",
                         "--all=yes", "--format", "toml",       "all"};
  EXPECT_EQ(shown(quarn(unknown)), plain);
  EXPECT_EQ(shown(quarn({"move", "apps", "--nonsense", "--all", "--all", "--format", "toml"})), all);
  EXPECT_EQ(shown(quarn({"move", "apps", "word", "--all", "--all", "--all"})), all);
}

}  // namespace
