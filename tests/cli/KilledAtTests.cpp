#include <gtest/gtest.h>
#include <set>

#include "tests/cli/Faults.h"
#include "tests/support/linux/KilledAt.h"

using namespace expected;
using namespace fault;

namespace {

namespace fs = std::filesystem;

const std::vector<std::string> moveCommand = {"quarn", "move", "one", app, "--yes"};

void clear() {
  fs::remove_all(app);
  fs::remove_all("/Volumes/X9/ExternalQuarn");
  fs::remove_all(scene::home + "/Library/Application Support/Quarn");
}

void makeScene() {
  clear();
  scene::makeApp(app, {}, 4000);
  scene::link(app + "/Contents/Current", "MacOS");
  scene::write(app + "/Contents/.hidden/note", "hidden");
}

/// The stages of a move that a crash can be told from afterwards.
enum class Stage { nothingDone, copied, removing, removed, linked };

Stage stageOf(const std::vector<std::string>& before) {
  if (scene::isLink(app)) return Stage::linked;
  if (!scene::exists(app)) return Stage::removed;
  if (scene::tree(app) != before) return Stage::removing;
  return scene::exists(moved) ? Stage::copied : Stage::nothingDone;
}

void expectNextAttempt(Stage stage, const std::string& bytes) {
  const auto run = moveOne();
  switch (stage) {
    case Stage::nothingDone:
      EXPECT_EQ(shown(run), succeeded(bytes));
      break;
    case Stage::copied:
      EXPECT_EQ(shown(run), refused(bytes, "Destination already exists."));
      break;
    case Stage::removing:
      EXPECT_EQ(run.status, 0);
      EXPECT_TRUE(run.out.ends_with("    FAIL: Destination already exists.\nfailed: 1\n")) << run.out;
      break;
    case Stage::removed:
      EXPECT_EQ(shown(run), failed("App not found: " + app));
      break;
    case Stage::linked:
      EXPECT_EQ(shown(run), printed("Foo  ->  X9   Zero KB (0 jobs)\nnothing to move.\n"));
      break;
  }
}

TEST(KilledAt, everyChangingCallOfAMoveLeavesAllBytesInTheirPlaces) {
  if (const std::string reason = scene::whyNotTraced(); !reason.empty()) GTEST_SKIP() << reason;
  makeScene();
  const auto before = scene::tree(app);
  const auto files = contents(app);
  const std::string bytes = sizeOf(app);
  const auto others = foreign();
  std::set<Stage> met;
  int n = 1;
  for (;; ++n) {
    ASSERT_LT(n, 500);
    makeScene();
    const auto run = scene::killedAt(n, moveCommand);
    ASSERT_TRUE(run);
    SCOPED_TRACE("killed at changing call " + std::to_string(n) + ", " + run->call);
    const Stage stage = stageOf(before);
    EXPECT_EQ(lost(files, {app, moved}), std::vector<std::string>{});
    if (stage >= Stage::removing) {
      EXPECT_EQ(scene::tree(moved), before) << "the copy is whole from then on";
    }
    if (stage < Stage::linked) {
      EXPECT_FALSE(scene::exists(scene::manifest)) << "nothing is recorded before";
    }
    EXPECT_EQ(foreign(), others);
    met.insert(stage);
    if (!run->wasKilled) {
      EXPECT_EQ(run->status, 0);
      EXPECT_EQ(stage, Stage::linked);
      break;
    }
    expectNextAttempt(stage, bytes);
    EXPECT_EQ(lost(files, {app, moved}), std::vector<std::string>{}) << "after the next attempt";
  }
  EXPECT_GT(n, 10) << "a move has more changing calls than that";
  EXPECT_EQ(met, (std::set<Stage>{Stage::nothingDone, Stage::copied, Stage::removing, Stage::removed,
                                  Stage::linked}))
      << "every stage was met";
}

TEST(KilledAt, everyChangingCallOfTheWayBackLeavesAllBytesOnOneSide) {
  if (const std::string reason = scene::whyNotTraced(); !reason.empty()) GTEST_SKIP() << reason;
  makeScene();
  const auto files = contents(app);
  const auto others = foreign();
  int n = 1;
  for (;; ++n) {
    ASSERT_LT(n, 500);
    makeScene();
    ASSERT_EQ(moveOne().status, 0);
    ASSERT_EQ(scene::target(app), moved);
    const auto run = scene::killedAt(n, {"quarn", "move", "back", app});
    ASSERT_TRUE(run);
    SCOPED_TRACE("killed at changing call " + std::to_string(n) + ", " + run->call);
    EXPECT_EQ(lost(files, {app, moved}), std::vector<std::string>{});
    EXPECT_TRUE(lost(files, {app}).empty() || lost(files, {moved}).empty()) << "one side is whole";
    EXPECT_EQ(foreign(), others);
    if (!run->wasKilled) {
      EXPECT_EQ(run->status, 0);
      break;
    }
  }
  EXPECT_GT(n, 10);
  EXPECT_FALSE(scene::exists(moved));
}

TEST(KilledAt, everyChangingCallOfAPathMoveLeavesAllBytesOnOneSide) {
  if (const std::string reason = scene::whyNotTraced(); !reason.empty()) GTEST_SKIP() << reason;
  const std::string source = "/Users/me/Movies";
  const std::string destination = "/Volumes/X9/deep/Movies";
  int n = 1;
  for (;; ++n) {
    ASSERT_LT(n, 500);
    fs::remove_all(source);
    fs::remove_all("/Volumes/X9/deep");
    scene::writeBytes(source + "/a.mov", 3000);
    scene::writeBytes(source + "/Sub/b.mov", 3000);
    const auto files = contents(source);
    const std::vector<std::string> command = {"move",          "path",      "--source", source,
                                              "--destination", destination, "--yes"};
    std::vector<std::string> words = {"quarn"};
    words.insert(words.end(), command.begin(), command.end());
    const auto run = scene::killedAt(n, words);
    ASSERT_TRUE(run);
    SCOPED_TRACE("killed at changing call " + std::to_string(n) + ", " + run->call);
    EXPECT_TRUE(lost(files, {source}).empty() || lost(files, {destination}).empty()) << "one side is whole";
    if (!run->wasKilled) break;
    if (scene::exists(source)) {
      EXPECT_EQ(scene::quarn(command).status, 0);
      EXPECT_EQ(lost(files, {destination}), std::vector<std::string>{}) << "after the next attempt";
    }
  }
  EXPECT_GT(n, 5);
  EXPECT_EQ(scene::target(source), destination);
}

TEST(KilledAt, theLedgerStaysReadableAtEveryCallOfAMove) {
  if (const std::string reason = scene::whyNotTraced(); !reason.empty()) GTEST_SKIP() << reason;
  for (int n = 1;; ++n) {
    ASSERT_LT(n, 500);
    makeScene();
    fs::remove_all(fs::path(scene::installsDB).parent_path());
    scene::makeInstallsDB();
    const auto run = scene::killedAt(n, moveCommand);
    ASSERT_TRUE(run);
    SCOPED_TRACE("killed at changing call " + std::to_string(n) + ", " + run->call);
    EXPECT_EQ(scene::sql("PRAGMA integrity_check"), std::vector<std::string>{"ok"});
    const auto rows = scene::sql("SELECT app_name FROM installs");
    EXPECT_LE(rows.size(), 1U);
    if (!rows.empty()) {
      EXPECT_TRUE(scene::isLink(app)) << "a row only for a move that was done";
    }
    if (!run->wasKilled) {
      EXPECT_EQ(rows.size(), 1U);
      break;
    }
  }
}

}  // namespace
