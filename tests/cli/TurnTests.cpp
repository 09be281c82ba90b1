#include <chrono>
#include <csignal>
#include <gtest/gtest.h>

#include "tests/cli/Faults.h"
#include "tests/cli/Two.h"

using namespace expected;
using namespace fault;
using turns::Two;
using turns::waiting;

namespace {

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;
using std::chrono::milliseconds;

class Turns : public testing::Test {
 protected:
  void SetUp() override {
    // Long enough that the runs meet at every step.
    replaceDitto("sleep 0.05; " + realDitto + "; code=$?; sleep 0.05; exit $code");
    makeApp();
  }
  void makeApp() {
    fs::remove_all(app);
    fs::remove_all("/Volumes/X9/ExternalQuarn");
    fs::remove_all(scene::home + "/Library/Application Support/Quarn");
    scene::makeApp(app, {}, 4000);
    before = scene::tree(app);
  }
  void expectMoved(const Two& two) {
    EXPECT_EQ(scene::target(app), moved) << two.all();
    EXPECT_EQ(scene::tree(moved), before) << two.all();
    EXPECT_FALSE(scene::exists(scene::driveTrash())) << "what the other run made, nobody sets aside\n"
                                                     << two.all();
  }
  void expectHome(const Two& two) {
    EXPECT_EQ(scene::tree(app), before) << two.all();
    EXPECT_FALSE(scene::exists(moved)) << two.all();
  }

  Lines before;
  const Lines none{};
  // By names that hold no path: a path in the other run's command line would count as a running application.
  const std::string move = "quarn move one com.example.foo --yes";
  const std::string back = "quarn move back Foo";
};

TEST_F(Turns, ofTwoMovesOfOneApplicationOneIsDoneAndTheOtherRefused) {
  for (const int gap : {0, 0, 0, 5, 10, 20, 30, 50, 80, 120, 200, 400}) {
    makeApp();
    const Two two(move, move, milliseconds(gap));
    EXPECT_TRUE(two.oneSays("    ok in ")) << gap << "\n" << two.all();
    expectMoved(two);
    // The one that came later may have looked before or after the link was made.
    EXPECT_TRUE(two.oneSays("    FAIL: It has been moved since it was looked at: " + app + "\n") ||
                two.oneSays("nothing to move.\n"))
        << gap << "\n"
        << two.all();
  }
}

TEST_F(Turns, ofTwoWaysBackOneIsDoneAndTheOtherRefused) {
  for (const int gap : {0, 0, 0, 5, 10, 20, 50, 100}) {
    makeApp();
    ASSERT_EQ(moveOne().status, 0);
    const Two two(back, back, milliseconds(gap));
    EXPECT_TRUE(two.oneSays("moved back: " + app + "\n")) << gap << "\n" << two.all();
    EXPECT_TRUE(two.oneSays("error\tNot a symlink: " + app + " — already local, nothing to move back.\n"))
        << gap << "\n"
        << two.all();
    expectHome(two);
  }
}

TEST_F(Turns, ofAWayBackThatIsHeldUpTheOtherWaitsAndLosesNothing) {
  ASSERT_EQ(moveOne().status, 0);
  scene::replaceTool("/usr/bin/find", "#!/bin/sh\nsleep 0.5\nexit 1\n");
  const Two two(back, back, milliseconds(150));
  EXPECT_EQ(two.first, "moved back: " + app + "\n");
  EXPECT_EQ(two.secondError,
            waiting + "error\tNot a symlink: " + app + " — already local, nothing to move back.\n");
  expectHome(two);
}

TEST_F(Turns, aWayBackBesideAMoveIsCarriedOutBeforeOrAfterIt) {
  for (const int gap : {0, 10, 30, 60, 120, 250}) {
    makeApp();
    const Two two(move, back, milliseconds(gap));
    if (scene::isLink(app)) {
      expectMoved(two);
    } else {
      expectHome(two);
      EXPECT_NE(two.second.find("moved back: "), std::string::npos) << two.all();
    }
  }
}

TEST_F(Turns, ofTwoPathMovesOneIsDoneAndTheOtherFindsTheLink) {
  const std::string source = "/Users/me/Movies", destination = "/Volumes/X9/Movies";
  const std::string path = "quarn move path --source " + source + " --destination " + destination + " --yes";
  fs::rename("/usr/bin/rsync", "/usr/libexec/quarn-room/rsync");
  scene::replaceTool("/usr/bin/rsync", "#!/bin/sh\nsleep 0.2\nexec /usr/libexec/quarn-room/rsync \"$@\"\n");
  for (const int gap : {0, 5, 50, 150}) {
    fs::remove_all(source);
    fs::remove_all(destination);
    scene::writeBytes(source + "/a.mov", 3000);
    scene::writeBytes(source + "/Sub/b.mov", 3000);
    const auto tree = scene::tree(source);
    const Two two(path, path, milliseconds(gap));
    EXPECT_TRUE(two.oneSays("linked: " + source)) << two.all();
    EXPECT_TRUE(two.oneSays("already symlink: " + source + " -> " + destination + "\n")) << two.all();
    EXPECT_EQ(scene::target(source), destination);
    EXPECT_EQ(scene::tree(destination), tree);
  }
}

/// Holds the turn from outside for as long as it lives.
scene::Background holdTheTurn(const std::string& seconds) {
  fs::remove("/tmp/holding");
  return scene::Background(
      {"/bin/sh", "-c", "flock " + scene::home + " sh -c 'touch /tmp/holding; sleep " + seconds + "'"});
}

TEST_F(Turns, aJobIsLookedAtAnewWhenItsTurnHasCome) {
  const std::string caches = scene::home + "/Library/Caches";
  scene::write(caches + "/com.example.foo/data", "of Foo");
  const auto holder = holdTheTurn("1");
  ASSERT_TRUE(scene::appears("/tmp/holding"));
  scene::Background run({"/bin/sh", "-c", move + " >/tmp/1.out 2>&1"});
  std::this_thread::sleep_for(milliseconds(400));
  // Meanwhile the folder around its data goes to the drive as a whole.
  scene::shell("cp -a " + caches + " /Volumes/X9/Caches && rm -r " + caches +
               " && ln -s /Volumes/X9/Caches " + caches);
  run.wait();
  EXPECT_NE(scene::read("/tmp/1.out")
                .find("    FAIL: It has been moved since it was looked at: " + caches + "/com.example.foo\n"),
            std::string::npos)
      << scene::read("/tmp/1.out");
  EXPECT_EQ(scene::read("/Volumes/X9/Caches/com.example.foo/data"), "of Foo");
  EXPECT_FALSE(scene::isLink("/Volumes/X9/Caches/com.example.foo"));
}

/// Starts a path move that asks, lets something happen meanwhile, and then answers yes; what it said.
std::string pathMoveAnsweredAfter(const std::string& from, const std::string& to,
                                  const std::function<void()>& meanwhile) {
  scene::shell("rm -f /tmp/answer; mkfifo /tmp/answer");
  scene::Background run({"/bin/sh", "-c",
                         "quarn move path --source " + from + " --destination " + to +
                             " </tmp/answer >/tmp/1.out 2>&1; echo status $? >>/tmp/1.out"});
  scene::Background answer(
      {"/bin/sh", "-c", "exec 3>/tmp/answer; while [ ! -e /tmp/go ]; do sleep 0.02; done; echo y >&3"});
  fs::remove("/tmp/go");
  for (int i = 0; i < 200 && scene::read("/tmp/1.out").find("Proceed?") == std::string::npos; ++i)
    std::this_thread::sleep_for(milliseconds(20));
  meanwhile();
  scene::write("/tmp/go", "");
  run.wait();
  return scene::read("/tmp/1.out");
}

TEST_F(Turns, aFileThatWasMovedWhileThePersonWasAskedIsNotReplacedByItsOwnLink) {
  const std::string from = "/Users/me/film.mov", to = "/Volumes/X9/film.mov";
  scene::writeBytes(from, 9000);
  const std::string content = scene::read(from);
  const std::string said = pathMoveAnsweredAfter(from, to, [&] {
    EXPECT_EQ(scene::quarn({"move", "path", "--source", from, "--destination", to, "--yes"}).status, 0);
  });
  EXPECT_NE(said.find("already symlink: " + from + " -> " + to + "\nstatus 0\n"), std::string::npos) << said;
  EXPECT_EQ(scene::read(to), content);
  EXPECT_FALSE(scene::isLink(to));
}

TEST_F(Turns, aFolderThatWentWithTheOneAroundItWhileThePersonWasAskedIsNotLost) {
  scene::writeBytes("/Users/me/Dir/sub/a.mov", 9000);
  const std::string said = pathMoveAnsweredAfter("/Users/me/Dir/sub", "/Volumes/X9/Dir/sub", [] {
    EXPECT_EQ(scene::quarn(
                  {"move", "path", "--source", "/Users/me/Dir", "--destination", "/Volumes/X9/Dir", "--yes"})
                  .status,
              0);
  });
  EXPECT_NE(said.find("error\t"), std::string::npos) << said;
  EXPECT_TRUE(said.ends_with("status 1\n")) << said;
  EXPECT_TRUE(fs::is_directory(fs::symlink_status("/Volumes/X9/Dir/sub")));
  EXPECT_EQ(fs::file_size("/Volumes/X9/Dir/sub/a.mov"), 9000u);
}

TEST_F(Turns, whoWaitsSaysSoOnceAndTheRunsOfOtherApplicationsWaitToo) {
  scene::makeApp("/Applications/Bar.app", {.identifier = "com.example.bar"}, 4000);
  scene::write(scene::home + "/Library/Application Support/Bar/data", "of Bar");
  replaceDitto("touch /tmp/copying; sleep 0.4; exec " + realDitto);
  scene::Background first({"/bin/sh", "-c", move + " >/tmp/1.out 2>&1"});
  ASSERT_TRUE(scene::appears("/tmp/copying"));
  const auto second = scene::quarn({"move", "one", "/Applications/Bar.app", "--yes"});
  first.wait();
  EXPECT_EQ(second.err, waiting);
  EXPECT_EQ(scene::target("/Applications/Bar.app"), apps + "/Bar.app");
  EXPECT_TRUE(scene::isLink(scene::home + "/Library/Application Support/Bar"));
}

TEST_F(Turns, whoHasToWaitForEachOfItsJobsSaysSoOnce) {
  scene::write(scene::home + "/Library/Application Support/Foo/data", "of Foo");
  scene::write(scene::home + "/Library/Caches/com.example.foo/data", "of Foo");
  // Another holder comes again and again, for longer than a job takes.
  const scene::Background other(
      {"/bin/sh", "-c",
       "touch /tmp/holding; for i in 1 2 3 4 5 6 7 8 9; do flock " + scene::home + " sleep 0.2; done"});
  ASSERT_TRUE(scene::appears("/tmp/holding"));
  std::this_thread::sleep_for(milliseconds(100));
  const auto run = moveOne();
  EXPECT_EQ(run.err, waiting);
  EXPECT_NE(run.out.find("[3/3]"), std::string::npos) << run.out;
  EXPECT_EQ(scene::target(app), moved);
}

TEST_F(Turns, aRunThatWasKilledHoldsNobodyUp) {
  replaceDitto("touch /tmp/copying; sleep 5");
  {
    scene::Background killed({"/bin/sh", "-c", "exec " + move + " >/dev/null 2>&1"});
    ASSERT_TRUE(scene::appears("/tmp/copying"));
    ::kill(killed.pid(), SIGKILL);
    killed.wait();
  }
  fs::remove_all(moved);
  replaceDitto("exec " + realDitto);
  const auto next = moveOne();
  EXPECT_EQ(next.err, "");
  EXPECT_EQ(scene::target(app), moved);
}

TEST_F(Turns, leaveNothingOnTheDisk) {
  const auto homeBefore = scene::tree(scene::home);
  EXPECT_EQ(scene::quarn({"move", "back", app}).status, 1) << "it is no link";
  EXPECT_EQ(scene::tree(scene::home), homeBefore);
}

/// Two people have homes, and so turns, of their own; on the drive they meet all the same.
TEST_F(Turns, ofTwoPeopleOnOneDriveOneGetsThePlace) {
  const std::string yours = "/Users/you/Applications/Foo.app";
  for (const int gap : {0, 0, 5, 20, 50, 100}) {
    makeApp();
    fs::remove_all("/Users/you");
    scene::makeApp(yours, {.identifier = "com.example.yours"}, 7000);
    const auto yourTree = scene::tree(yours);
    const Two two(move, "HOME=/Users/you quarn move one com.example.yours --yes", milliseconds(gap));
    EXPECT_TRUE(two.oneSays("    ok in ")) << gap << "\n" << two.all();
    EXPECT_TRUE(two.oneSays("    FAIL: Destination already exists.\n")) << gap << "\n" << two.all();
    const bool isMine = scene::isLink(app);
    EXPECT_EQ(scene::tree(moved), isMine ? before : yourTree) << two.all();
    EXPECT_EQ(scene::tree(isMine ? yours : app), isMine ? yourTree : before) << two.all();
    EXPECT_FALSE(scene::exists(scene::driveTrash())) << two.all();
  }
}

}  // namespace
