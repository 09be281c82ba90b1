#include <chrono>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sstream>
#include <thread>

#include "tests/cli/Faults.h"
#include "tests/support/IsAlive.h"

using namespace expected;
using namespace fault;

namespace {

const std::string executable = app + "/Contents/MacOS/Foo";
const std::string running = "App is running: Foo.app. Quit it first, or pass --quit-running.";

/// A bundle whose executable is a copy of a real program, so that a process of it lies in the bundle.
void makeAppOf(const std::string& program) {
  scene::makeApp(app);
  std::filesystem::copy_file(program, executable, std::filesystem::copy_options::overwrite_existing);
}

/// A shell out of the bundle that says when it is ready; `script` begins with what it does on SIGTERM. It
/// waits without a child: one that has just been forked is a process of the bundle, too, and outlives it.
std::vector<std::string> shellOfApp(const std::string& script) {
  return {executable, "-c",
          "mkfifo /tmp/never 2>&-; exec 3<>/tmp/never; " + script +
              "; : >/tmp/ready; while :; do read -r line <&3; done"};
}

TEST(RunningApp, isNotMoved) {
  makeAppOf("/bin/sh");
  const auto before = scene::tree(app);
  const std::string bytes = sizeOf(app);
  scene::Background process(shellOfApp(":"));
  ASSERT_TRUE(scene::appears("/tmp/ready"));
  EXPECT_EQ(shown(moveOne()), refused(bytes, running));
  EXPECT_EQ(scene::tree(app), before);
  EXPECT_FALSE(scene::exists(apps)) << "not even the folder for it is made";
  EXPECT_TRUE(scene::isAlive(process.pid())) << "it goes on running";
}

TEST(RunningApp, movesOnceItHasEnded) {
  makeAppOf("/bin/sh");
  const std::string bytes = sizeOf(app);
  {
    scene::Background process(shellOfApp(":"));
    ASSERT_TRUE(scene::appears("/tmp/ready"));
    EXPECT_EQ(shown(moveOne()), refused(bytes, running));
  }
  EXPECT_EQ(shown(moveOne()), succeeded(bytes));
}

TEST(RunningApp, isSeenThroughAHelperInsideToo) {
  makeAppOf("/bin/sleep");
  const std::string helper = app + "/Contents/Frameworks/Helper.app/Contents/MacOS/helper";
  scene::makeFolder(std::filesystem::path(helper).parent_path());
  std::filesystem::copy_file("/bin/sleep", helper);
  const std::string bytes = sizeOf(app);
  scene::Background process({helper, "60"});
  ASSERT_TRUE(scene::appears("/proc/" + std::to_string(process.pid())));
  std::this_thread::sleep_for(std::chrono::milliseconds(100));
  EXPECT_EQ(shown(moveOne()), refused(bytes, running));
}

TEST(RunningApp, anOutsideProcessThatNamesThePathCountsAsRunning) {
  makeAppOf("/bin/sleep");
  const std::string bytes = sizeOf(app);
  // Its own path stays without a slash: what is found begins at the first slash of the line.
  scene::Background process({"sh", "-c", ": >ready; sleep 60; : " + app});
  ASSERT_TRUE(scene::appears(scene::home + "/ready"));
  EXPECT_EQ(shown(moveOne()), refused(bytes, running));
}

TEST(RunningApp, theCommandLinesThatLedToQuarnDoNotCount) {
  const std::string command = "quarn move one " + app + " --yes";
  scene::write("/tmp/script.sh", "#!/bin/sh\n# " + app + "\n\"$@\"\nexit $?\n");
  ::chmod("/tmp/script.sh", 0755);
  const std::vector<std::string> rows[] = {
      {"quarn", "move", "one", app, "--yes"},
      {"env", "quarn", "move", "one", app, "--yes"},
      {"timeout", "60", "quarn", "move", "one", app, "--yes"},
      {"/bin/sh", "-c", command},
      {"/bin/sh", "-c", command + "; true"},
      {"/bin/sh", "-c", "/bin/sh -c '" + command + "; true'; true"},
      {"/bin/bash", "-c", "( " + command + " ); true"},
      {"/tmp/script.sh", "quarn", "move", "one", app, "--yes"},
      {"/tmp/script.sh", "env", "/tmp/script.sh", "quarn", "move", "one", app, "--yes"},
  };
  for (const auto& words : rows) {
    scene::makeApp(app);
    const auto run = scene::run(words);
    EXPECT_EQ(run.status, 0);
    EXPECT_NE(run.out.find("    ok in "), std::string::npos) << run.out;
    EXPECT_EQ(scene::target(app), moved);
    std::filesystem::remove(app);
    std::filesystem::remove_all(moved);
  }
}

TEST(RunningApp, behindAWrapperARunningOneIsStillSeen) {
  makeAppOf("/bin/sh");
  scene::Background process(shellOfApp(":"));
  ASSERT_TRUE(scene::appears("/tmp/ready"));
  for (const std::vector<std::string>& words :
       {std::vector<std::string>{"env", "quarn", "move", "one", app, "--yes"},
        {"/bin/sh", "-c", "quarn move one " + app + " --yes; true"}}) {
    const auto run = scene::run(words);
    EXPECT_NE(run.out.find("    FAIL: " + running + "\nfailed: 1\n"), std::string::npos) << run.out;
  }
  EXPECT_FALSE(scene::isLink(app));
}

TEST(RunningApp, isAskedToQuitAndThenMoved) {
  makeAppOf("/bin/sh");
  const std::string bytes = sizeOf(app);
  scene::Background process(shellOfApp("trap ': >/tmp/asked; exit 0' TERM"));
  ASSERT_TRUE(scene::appears("/tmp/ready"));
  EXPECT_EQ(shown(moveOne({"--quit-running"})), succeeded(bytes));
  EXPECT_TRUE(scene::exists("/tmp/asked"));
  EXPECT_EQ(process.wait(), 0) << "politely";
}

TEST(RunningApp, thatLeavesAZombieIsMoved) {
  makeAppOf("/bin/sleep");
  const std::string bytes = sizeOf(app);
  // Nobody collects it before the end of the case.
  scene::Background process({executable, "60"});
  std::this_thread::sleep_for(std::chrono::milliseconds(200));
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(shown(moveOne({"--quit-running"})), succeeded(bytes));
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(7));
  EXPECT_EQ(process.wait(), -SIGTERM);
}

TEST(RunningApp, thatTakesThreeSecondsToQuitIsWaitedFor) {
  makeAppOf("/bin/sh");
  const std::string bytes = sizeOf(app);
  scene::Background process(shellOfApp("trap 'sleep 3; exit 0' TERM"));
  ASSERT_TRUE(scene::appears("/tmp/ready"));
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(shown(moveOne({"--quit-running"})), succeeded(bytes));
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::seconds(3));
  EXPECT_EQ(process.wait(), 0);
}

TEST(RunningApp, thatDoesNotQuitIsNotMovedAndNotForced) {
  makeAppOf("/bin/sh");
  const auto before = scene::tree(app);
  const std::string bytes = sizeOf(app);
  scene::Background process(shellOfApp("trap '' TERM"));
  ASSERT_TRUE(scene::appears("/tmp/ready"));
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(shown(moveOne({"--quit-running"})), refused(bytes, running));
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::seconds(8));
  EXPECT_EQ(scene::tree(app), before);
  EXPECT_TRUE(scene::isAlive(process.pid()));
}

TEST(RunningApp, moveNextRefusedByItEndsWithOneAndMoveAllListsIt) {
  makeAppOf("/bin/sh");
  scene::Background process(shellOfApp(":"));
  ASSERT_TRUE(scene::appears("/tmp/ready"));
  const auto next = scene::quarn({"move", "next", "--yes", "--include-running"});
  EXPECT_EQ(next.status, 1);
  EXPECT_TRUE(next.out.ends_with("    FAIL: " + running + "\n")) << next.out;
  const auto all = scene::quarn({"move", "all", "--yes", "--include-running", "--no-snapshot"});
  EXPECT_EQ(all.status, 0);
  EXPECT_TRUE(all.out.ends_with("failed: 1\n  " + app + "  ::  " + running + "\n")) << all.out;
}

TEST(RunningApp, withoutAProcessListAProcessOfTheBundleIsStillSeen) {
  makeAppOf("/bin/sh");
  const std::string bytes = sizeOf(app);
  scene::Background process(shellOfApp(":"));
  ASSERT_TRUE(scene::appears("/tmp/ready"));
  scene::removeTool("/bin/ps");
  EXPECT_EQ(shown(moveOne()), refused(bytes, running));
}

TEST(RunningApp, onlyOneNamedLikeItDoesNotCount) {
  scene::makeApp(app);
  const std::string bytes = sizeOf(app);
  const std::string other = "/Users/me/Other/Foo.app/Contents/MacOS/Foo";
  scene::makeFolder(std::filesystem::path(other).parent_path());
  std::filesystem::copy_file("/bin/sleep", other);
  scene::Background process({other, "60"});
  std::this_thread::sleep_for(std::chrono::milliseconds(200));
  EXPECT_EQ(shown(moveOne()), succeeded(bytes));
}

/// How often a command looks at the list of all processes.
std::size_t looks(const std::vector<std::string>& command) {
  std::filesystem::remove("/tmp/looks");
  scene::replaceTool("/bin/ps", "#!/bin/sh\necho \"$*\" >>/tmp/looks\n");
  const auto run = scene::quarn(command);
  EXPECT_EQ(run.status, 0) << run.err;
  std::istringstream lines(scene::exists("/tmp/looks") ? scene::read("/tmp/looks") : "");
  std::size_t count = 0;
  for (std::string line; std::getline(lines, line);) count += line == "-axo comm,args";
  return count;
}

TEST(RunningApp, isLookedForOnceInAPlanAndOnceBeforeEachBundleIsMoved) {
  for (const std::string name : {"One", "Two", "Three"}) {
    scene::makeApp("/Applications/" + name + ".app", {.identifier = "org." + name},
                   name == "One" ? 90'000 : 9'000);
    scene::writeBytes(scene::home + "/Library/Caches/org." + name + "/a", 1'000);
    scene::writeBytes(scene::home + "/Library/Logs/" + name + "/b", 1'000);
  }
  EXPECT_EQ(looks({"move", "plan"}), 1U);
  EXPECT_EQ(looks({"move", "plan", "--include-running"}), 0U);
  EXPECT_EQ(looks({"move", "all", "--dry-run"}), 1U);
  EXPECT_EQ(looks({"move", "one", "/Applications/One.app", "--yes"}), 1U) << "data folders don't run";
  EXPECT_EQ(looks({"move", "next", "--yes"}), 2U);
  EXPECT_EQ(looks({"move", "all", "--yes"}), 2U);
}

}  // namespace
