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

/// A small application that moves, and one whose place on the drive is taken, so that it can't.
void makeScene() {
  scene::makeApp("/Applications/Free.app", {.identifier = "com.example.free"}, 10'000);
  scene::makeApp("/Applications/Taken.app", {.identifier = "com.example.taken"}, 50'000);
  scene::write("/Volumes/X9/ExternalQuarn/Apps/Taken.app/foreign", "foreign");
  scene::write("/Users/me/Movies/a.mov", "film");
}

struct Row {
  Words words;
  int status;
  std::string lastLine;  ///< of standard output
};

std::string lastLine(const std::string& text) {
  const std::string lines = text.ends_with("\n") ? text.substr(0, text.size() - 1) : text;
  return lines.substr(lines.rfind('\n') + 1);
}

/// Each leaves the scene as it is, or fails to change it, and says nothing on standard error.
TEST(ExitStatus, isZeroForARunThatWasDoneAndTellsAScriptTheRest) {
  makeScene();
  const auto before = scene::tree("/Applications");
  const Row rows[] = {
      {{"move", "all"}, 0, "Proceed? [y/N] aborted."},
      {{"move", "one", "com.example.free"}, 0, "Proceed? [y/N] aborted."},
      {{"move", "path", "--source", "Movies", "--destination", "/Volumes/X9/Movies"},
       0,
       "Proceed? [y/N] aborted."},
      {{"move", "next"}, 1, "Proceed? [y/N] aborted."},
      {{"move", "all", "--dry-run"}, 0, "dry-run: no changes made."},
      {{"move", "one", "com.example.taken", "--yes"}, 0, "failed: 1"},
      {{"move", "next", "--largest-first", "--yes"}, 1, "    FAIL: Destination already exists."},
  };
  for (const Row& row : rows) {
    const scene::Run run = quarn(row.words);
    EXPECT_EQ(run.status, row.status) << joined(row.words);
    EXPECT_EQ(lastLine(run.out), row.lastLine) << joined(row.words);
    EXPECT_EQ(run.err, "") << joined(row.words);
  }
  EXPECT_EQ(scene::tree("/Applications"), before);
}

/// A word that isn't known behind an action is no request for help: it is passed over, or taken for the
/// name of an item.
TEST(ExitStatus, ofAWordThatIsNoFlagIsThatOfTheCommandWithoutIt) {
  makeScene();
  const std::pair<Words, std::string> failing[] = {
      {{"move", "one", "--help"},
       "Usage: move one <bundle-path|bundle-id> [--target-drive <path>] [--no-data] [--yes] [--progress]"},
      {{"move", "one", "-h"}, "App not found: -h"},
      {{"move", "one", "com.example.free "}, "App not found: com.example.free "},
      {{"move", "path", "--help"},
       "Usage: move path --source <path> --destination <path> [--yes] [--progress]"},
      {{"move", "restore", "--help"}, "Usage: move restore <symlink-path>"},
      {{"move", "back", "-h"}, "No such item: /Applications/-h.app"},
      {{"move", "back", "Free", "Taken"},
       "Not a symlink: /Applications/Free.app — already local, nothing to move back."},
      {{"move", "plan", "--target-drive", "--no-data"},
       "Target drive not found: --no-data. Run `move drives` to list mounts."},
  };
  for (const auto& [words, message] : failing) EXPECT_EQ(shown(quarn(words)), failed(message));
  const Words passedOver[] = {{"move", "drives"}, {"move", "apps"}, {"move", "plan"}, {"snapshot", "list"}};
  for (const Words& words : passedOver) {
    Words more = words;
    more.insert(more.end(), {"--help", "-h", "help", "--target-drive=none", "word"});
    EXPECT_EQ(shown(quarn(more)), shown(quarn(words))) << joined(words);
  }
}

TEST(ExitStatus, isTwoOnlyWhereNothingIsEligible) {
  EXPECT_EQ(quarn({"move", "next", "--yes"}).status, 2);
  makeScene();
  EXPECT_EQ(quarn({"move", "next", "--yes"}).status, 0);
  EXPECT_EQ(quarn({"move", "next", "--yes", "--largest-first"}).status, 1);
  EXPECT_EQ(quarn({"move", "next", "--yes", "--target-drive", "none"}).status, 1);
  scene::run({"/bin/rm", "-r", "/Applications/Free.app", "/Applications/Taken.app"});
  EXPECT_EQ(quarn({"move", "next", "--yes"}).status, 2);
}

}  // namespace
