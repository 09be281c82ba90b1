#include <functional>
#include <gtest/gtest.h>

#include "tests/cli/DriveScenes.h"
#include "tests/cli/Faults.h"
#include "tests/cli/Two.h"

using namespace fault;
using turns::milliseconds;
using turns::Two;

/// A repair that isn't alone, and one whose drive goes away or is full.

namespace {

namespace fs = std::filesystem;

/// A repair whose first question is open: time for others to change something.
class OpenQuestion {
 public:
  OpenQuestion() {
    for (int i = 0; i < 3000 && said().find("Proceed?") == std::string::npos; ++i)
      std::this_thread::sleep_for(milliseconds(20));
  }
  /// Says yes to it, and no to the next one.
  int answer() {
    scene::write("/tmp/enough", "");
    return asking_.wait();
  }
  static std::string said() { return scene::read("/tmp/said"); }

 private:
  static std::vector<std::string> shell(const std::string& line) { return {"/bin/sh", "-c", line}; }

  const scene::Run made_ = scene::shell("mkfifo /tmp/answers");
  scene::Background asking_{shell("quarn health repair --no-snapshot </tmp/answers >/tmp/said 2>&1")};
  scene::Background answering_{
      shell("exec >/tmp/answers; while [ ! -e /tmp/enough ]; do sleep 0.02; done; echo y; echo n")};
};

const std::vector<int> gaps = {0, 0, 10, 40, 80, 120, 200, 300};

class RepairPairs : public testing::Test {
 protected:
  void SetUp() override {
    // Long enough that the runs meet at every step.
    replaceDitto("sleep 0.04; " + realDitto + "; code=$?; sleep 0.04; exit $code");
  }
  void clear() {
    for (const std::string& place : {app, scene::drive + "/ExternalQuarn", scene::driveTrash(),
                                     scene::home + "/Library/Application Support/Quarn"})
      fs::remove_all(place);
  }
  const std::string repair = "quarn health repair --yes --no-snapshot ";
};

TEST_F(RepairPairs, twoThatMoveTheSameAppAgainMoveItOnce) {
  for (const int gap : gaps) {
    clear();
    scene::makeApp(app, {.version = "2.0"});
    scene::makeApp(moved);
    const auto fresh = scene::tree(app), old = scene::tree(moved);
    const Two two(repair + "--re-symlink-reverted", repair + "--re-symlink-reverted", milliseconds(gap));
    EXPECT_EQ(scene::target(app), moved) << two.all();
    EXPECT_EQ(scene::tree(moved), fresh) << two.all();
    EXPECT_EQ(names(scene::driveTrash()), std::vector<std::string>{"Foo.app"}) << two.all();
    EXPECT_EQ(scene::tree(scene::driveTrash() + "/Foo.app"), old) << two.all();
    EXPECT_TRUE(two.oneSays("  re-symlinked Foo.app\n")) << two.all();
    EXPECT_TRUE(two.oneSays("Everything healthy. Nothing to repair.\n")) << two.all();
  }
}

TEST_F(RepairPairs, aCopyThatAMoveIsMakingIsNoStaleCopy) {
  for (const char* flag : {"--reclaim-reverted", "--re-symlink-reverted", ""}) {
    for (const int gap : gaps) {
      clear();
      scene::makeApp(app);
      const auto whole = scene::tree(app);
      const Two two("quarn move one com.example.foo --yes", repair + flag, milliseconds(gap));
      EXPECT_EQ(scene::target(app), moved) << two.all();
      EXPECT_EQ(scene::tree(moved), whole) << two.all();
      EXPECT_FALSE(scene::exists(scene::driveTrash())) << "what one run made, no other sets aside\n"
                                                       << two.all();
      EXPECT_TRUE(two.oneSays("Everything healthy. Nothing to repair.\n")) << two.all();
    }
  }
}

TEST_F(RepairPairs, anAppThatIsOnItsWayHomeIsNeitherOrphanNorReverted) {
  for (const int gap : gaps) {
    clear();
    scene::makeApp(moved);
    scene::link(app, moved);
    const auto whole = scene::tree(moved);
    const Two two("quarn move back Foo", repair + "--reclaim-reverted", milliseconds(gap));
    EXPECT_EQ(scene::tree(app), whole) << two.all();
    EXPECT_FALSE(scene::exists(moved)) << two.all();
    EXPECT_FALSE(scene::exists(scene::driveTrash())) << two.all();
  }
}

TEST_F(RepairPairs, aQuestionThatIsOpenKeepsOtherRunsWaiting) {
  clear();
  scene::makeApp(app);
  scene::link("/Applications/Dead.app", "/nowhere");
  OpenQuestion question;
  scene::Background moving({"/bin/sh", "-c", "quarn move one com.example.foo --yes >/tmp/moved 2>/tmp/told"});
  for (int i = 0; i < 3000 && scene::read("/tmp/told") != turns::waiting; ++i)
    std::this_thread::sleep_for(milliseconds(20));
  EXPECT_EQ(scene::read("/tmp/told"), turns::waiting);
  EXPECT_FALSE(scene::isLink(app));
  EXPECT_EQ(question.answer(), 0);
  EXPECT_EQ(moving.wait(), 0);
  EXPECT_TRUE(scene::isLink(app)) << scene::read("/tmp/moved");
  EXPECT_FALSE(scene::isLink("/Applications/Dead.app"));
}

int times(const std::string& text, const std::string& piece) {
  int count = 0;
  for (auto at = text.find(piece); at != std::string::npos; at = text.find(piece, at + 1)) ++count;
  return count;
}

/// Begins a repair whose copying waits, lets something happen, and lets it go on. What it said.
std::string repairWhile(const std::string& flag, const std::function<void()>& happens) {
  replaceDitto("touch /tmp/half; while [ ! -e /tmp/out ]; do sleep 0.02; done; exec " + realDitto);
  scene::Background run(
      {"/bin/sh", "-c", "quarn health repair --yes --no-snapshot " + flag + " >/tmp/said 2>&1"});
  EXPECT_TRUE(scene::appears("/tmp/half"));
  happens();
  scene::write("/tmp/out", "");
  EXPECT_EQ(run.wait(), 0);
  return scene::read("/tmp/said");
}

TEST(RepairFault, theDriveThatIsPulledLeavesTheApplicationWhole) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  for (const bool leavesItsMountPoint : {false, true}) {
    fs::remove("/tmp/half");
    fs::remove("/tmp/out");
    scene::makeApp(app, {.version = "2.0"});
    scene::makeApp(moved);
    const auto fresh = scene::tree(app), old = scene::tree(moved);
    PocketDrive drive;
    const std::string said =
        repairWhile("--re-symlink-reverted", [&] { PocketDrive::pull(leavesItsMountPoint); });
    EXPECT_NE(said.find("\n  FAIL: "), std::string::npos) << said;
    EXPECT_EQ(scene::tree(app), fresh) << said;
    PocketDrive::plug();
    EXPECT_EQ(scene::tree(scene::driveTrash() + "/Foo.app"), old);
    fs::remove_all(scene::driveTrash());
    fs::remove_all(moved);
  }
}

TEST(RepairFault, aFullDriveLeavesTheApplicationWhole) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  scene::plug("Tiny", "512k");
  const std::string onTiny = "/Volumes/Tiny/ExternalQuarn/Apps/Foo.app";
  scene::makeApp(app);
  scene::writeBytes(app + "/Contents/.hidden/large", 900'000);
  scene::makeApp(onTiny, {}, 10);
  const auto fresh = scene::tree(app), old = scene::tree(onTiny);
  const auto run = scene::quarn({"health", "repair", "--yes", "--no-snapshot", "--re-symlink-reverted"});
  EXPECT_NE(run.out.find("\n  FAIL: Copy failed: ditto failed: "), std::string::npos) << run.out;
  EXPECT_EQ(scene::tree(app), fresh);
  const std::string trash = scene::driveTrash("/Volumes/Tiny");
  EXPECT_EQ(scene::tree(trash + "/Foo.app"), old);
}

TEST(RepairFault, anItemThatTookTheNameOfTheOneThatWasFoundStays) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  scene::makeApp(moved);
  OpenQuestion question;
  plugAnotherX9();
  scene::makeApp(moved, {.version = "of another drive"});
  const auto other = scene::tree(moved);
  EXPECT_EQ(question.answer(), 0);
  EXPECT_NE(question.said().find("  WARN: could not trash " + moved +
                                 ": “Foo.app” isn’t the item that was found.\n"),
            std::string::npos)
      << question.said();
  EXPECT_EQ(scene::tree(moved), other);
}

TEST(RepairFault, aLinkIsNotRemovedWhenTheItemThatItWasToLeadToWentAway) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  const std::string link = scene::home + "/Library/Application Support/Notes";
  scene::write("/Volumes/X9/ExternalQuarn/Data/Notes/file", "notes");
  scene::link(link, "/Volumes/X9/Quarn/Data/Notes");
  OpenQuestion question;
  scene::unplug("X9");
  EXPECT_EQ(question.answer(), 0);
  EXPECT_TRUE(
      question.said().ends_with("  left as it is: /Volumes/X9/ExternalQuarn/Data/Notes is no longer there\n"))
      << question.said();
  EXPECT_TRUE(scene::isLink(link));
}

TEST(RepairFault, aLinkThatWasReplacedWhileTheQuestionWasOpenStays) {
  const std::string link = "/Applications/Foo.app", whole = "/Volumes/X9/ExternalQuarn/Apps/New.app";
  scene::makeApp(whole);
  scene::link(link, "/Volumes/X9/ExternalQuarn/Apps/Foo.app");
  OpenQuestion question;
  std::filesystem::remove(link);
  scene::link(link, whole);
  EXPECT_EQ(question.answer(), 0);
  EXPECT_NE(question.said().find("  left as it is: “" + link + "” has changed since it was looked at.\n"),
            std::string::npos)
      << question.said();
  EXPECT_EQ(scene::target(link), whole);
}

TEST(RepairFault, aTrashThatRefusesLeavesTheItemsAndSaysSo) {
  scene::makeApp(moved);
  const auto orphan = scene::tree(moved);
  scene::write("/Volumes/X9/.Trashes", "in the way");
  const auto run = scene::quarn({"health", "repair", "--yes", "--no-snapshot"});
  EXPECT_NE(run.out.find("  WARN: could not trash " + moved + ": "), std::string::npos) << run.out;
  EXPECT_TRUE(run.out.ends_with("  trashed orphan " + moved + "\n"))
      << "said though it failed, as each closing line is";
  EXPECT_EQ(scene::tree(moved), orphan);
}

TEST(RepairFault, tenThousandLinksAreGoneThrough) {
  for (int i = 0; i < 10'000; ++i) scene::link("/Applications/" + std::to_string(i) + ".app", "/nowhere");
  const auto run = scene::quarn({"health", "repair", "--yes", "--no-snapshot"});
  EXPECT_EQ(times(run.out, "  removed /Applications/"), 10'000);
  EXPECT_EQ(scene::quarn({"health", "check"}).status, 0);
}

}  // namespace
