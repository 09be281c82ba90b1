#include <csignal>
#include <gtest/gtest.h>

#include "tests/cli/ScaffoldScenes.h"

/// Generated scripts that aren't alone: of two for one application the second stops before it does anything,
/// and a claim that a killed one left behind is told of, with the line that removes it.

using namespace scaffolds;
using expected::shown;

namespace {

namespace fs = std::filesystem;

const std::string orders = "/var/db/quarn-room-tools/ditto";
const std::vector<Words> roads = {{}, {drive}};

/// Another script has, or had, the claim.
const std::string heldUp =
    "another build.command is at work on Paper Kite, or was killed: " + claim +
    " is there\nif none of its tools is at work any more, remove that folder: rmdir /tmp/Paper\\ Kite.run\n";

/// A script that is copying, and has come half way.
class AtWork {
 public:
  explicit AtWork(const Words& options = {}) : script_((prepare(), commandFor(options))) {
    EXPECT_TRUE(scene::appears("/tmp/begun")) << said();
  }
  ~AtWork() { goOn(); }
  AtWork(const AtWork&) = delete;
  AtWork& operator=(const AtWork&) = delete;

  void send(int signal) { ::kill(script_.pid(), signal); }
  void goOn() { scene::write("/tmp/go", ""); }
  int end() {
    goOn();
    const int status = script_.wait();
    fs::remove(orders);
    return status;
  }
  static std::string said() { return scene::read("/tmp/said"); }

  static Words commandFor(const Words& options) {
    Words command = {"/usr/bin/env"};
    for (const auto& [name, value] : environmentOf({})) command.push_back(name + "=" + value);
    command.insert(command.end(), {"/bin/sh", "-c", "exec \"$@\" >/tmp/said 2>&1", "sh"});
    command.push_back(project + "/build.command");
    command.insert(command.end(), options.begin(), options.end());
    return command;
  }

 private:
  static void prepare() {
    for (const char* file : {"/tmp/begun", "/tmp/go", "/tmp/copied"}) fs::remove(file);
    scene::replaceTool("/usr/bin/ditto",
                       "#!/bin/sh\n"
                       "mkdir -p \"$3/Contents\" && echo half >\"$3/Contents/Info.plist\"\n"
                       "cp /usr/libexec/quarn-room/ditto /usr/bin/ditto\n"
                       "touch /tmp/begun\n"
                       "until [ -e /tmp/go ]; do sleep 0.02; done\n"
                       "/usr/libexec/quarn-room/ditto \"$@\"; code=$?\n"
                       "touch /tmp/copied\n"
                       "exit $code\n");
  }

  scene::Background script_;
};

/// All that a script could touch, the project with what it built included.
std::vector<std::string> everything() {
  std::vector<std::string> all;
  for (const std::string& place :
       {std::string("/Applications"), std::string("/Volumes"), project, temporary}) {
    if (!scene::exists(place)) continue;
    const auto more = scene::tree(place);
    all.insert(all.end(), more.begin(), more.end());
  }
  return all;
}

void expectRefusalThatTouchesNothing(const Words& options) {
  const auto before = everything();
  EXPECT_EQ(shown(build(options)), shown({1, "", heldUp}));
  EXPECT_EQ(everything(), before);
}

/// What people read and do: the last line holds the command.
void removeClaimAsTold(const std::string& words) {
  const auto command = words.rfind(": rmdir ") + 2;
  EXPECT_EQ(shown(scene::run({"/bin/bash", "-c", words.substr(command)})), shown({0, "", ""})) << words;
}

TEST(ScaffoldPairs, theSecondStopsBeforeItTouchesAnything) {
  makeProjectWithScript();
  for (const Words& road : roads) {
    scene::makeApp(installed);
    scene::makeApp(onDrive);
    AtWork first(road);
    for (const Words& options : {Words{}, Words{drive}, Words{"--no-install"}})
      expectRefusalThatTouchesNothing(options);
    EXPECT_EQ(first.end(), 0) << AtWork::said();
    EXPECT_EQ(scene::tree(installed + "/Contents"), scene::tree(built + "/Contents")) << "whole, and unmixed";
    EXPECT_EQ(build(road).status, 0) << "and then it is the next one's turn";
    fs::remove_all(installed);
    fs::remove_all(onDrive);
  }
}

TEST(ScaffoldPairs, aScriptOfAnotherProjectForTheSameApplicationStopsToo) {
  makeProjectWithScript();
  makeProjectWithScript({"--app-name", "Paper Kite", "--bin-src", "build/Other.app"}, "/Users/me/Other");
  AtWork first;
  EXPECT_EQ(shown(build({}, "/Users/me/Other")), shown({1, "", heldUp}));
  EXPECT_FALSE(scene::exists("/Users/me/Other/build"));
  EXPECT_EQ(first.end(), 0);
}

TEST(ScaffoldPairs, aScriptForAnotherApplicationGoesOn) {
  makeProjectWithScript();
  makeProjectWithScript({}, "/Users/me/Other");
  AtWork first;
  EXPECT_EQ(build({}, "/Users/me/Other").status, 0);
  EXPECT_EQ(first.end(), 0);
  EXPECT_EQ(said("/Applications/Other.app"), "version 1\n");
  EXPECT_EQ(said(installed), "version 1\n");
}

TEST(ScaffoldPairs, ofTwoThatStartTogetherOneInstallsAndTheOtherDoesNothing) {
  makeProjectWithScript();
  EXPECT_EQ(build({"--no-install"}).status, 0);
  scene::write("/Users/me/once", "cd '" + project + "' && ./build.command " + drive +
                                     " >/tmp/$1.out 2>/tmp/$1.err; echo $? >/tmp/$1\n");
  for (int round = 0; round < 8; ++round) {
    scene::shell("sh /Users/me/once 1 & sh /Users/me/once 2 & wait");
    const std::string statuses = scene::read("/tmp/1") + scene::read("/tmp/2");
    EXPECT_NE(statuses, "1\n1\n");
    for (const std::string run : {"1", "2"}) {
      if (scene::read("/tmp/" + run) == "0\n") continue;
      EXPECT_EQ(scene::read("/tmp/" + run + ".out"), "");
      EXPECT_EQ(scene::read("/tmp/" + run + ".err"), heldUp);
    }
    EXPECT_EQ(scene::target(installed), onDrive);
    EXPECT_EQ(scene::tree(onDrive), scene::tree(built));
    EXPECT_FALSE(scene::exists(claim));
  }
}

TEST(ScaffoldPairs, whatAKilledScriptLeftIsToldOfUntilItIsRemoved) {
  makeProjectWithScript();
  stopTheClock();
  for (const Words& road : roads) {
    const std::string copy = road.empty() ? installed : onDrive;
    fs::remove_all(stash);
    AtWork killed(road);
    killed.send(SIGKILL);
    EXPECT_EQ(killed.end(), -SIGKILL);
    EXPECT_TRUE(scene::appears("/tmp/copied")) << "the tool goes on by itself";
    expectRefusalThatTouchesNothing(road);
    const auto left = scene::tree(copy);
    removeClaimAsTold(build(road).err);
    EXPECT_EQ(build(road).status, 0);
    EXPECT_EQ(scene::tree(copy), scene::tree(built));
    EXPECT_EQ(scene::tree(stash + "/Paper Kite.app-" + moment), left) << "nothing is deleted";
    EXPECT_FALSE(scene::exists(claim));
  }
}

TEST(ScaffoldPairs, aScriptThatIsToEndWaitsForItsToolAndLeavesNoClaim) {
  makeProjectWithScript();
  for (const int signal : {SIGTERM, SIGHUP}) {
    AtWork ended({drive});
    ended.send(signal);
    expectRefusalThatTouchesNothing({drive});
    EXPECT_EQ(ended.end(), 128 + signal);
    EXPECT_TRUE(scene::exists("/tmp/copied"));
    EXPECT_FALSE(scene::exists(installed)) << "it did nothing more";
    EXPECT_FALSE(scene::exists(claim));
  }
  EXPECT_EQ(build({drive}).status, 0);
}

TEST(ScaffoldPairs, aSignalWhileTheClaimIsMadeLeavesNone) {
  makeProjectWithScript();
  makeScript(tools + "/mkdir", "#!/bin/sh\n/usr/bin/mkdir \"$@\" || exit\ntouch /tmp/made\nsleep 0.3\n");
  for (const int signal : {SIGTERM, SIGHUP, SIGINT}) {
    fs::remove("/tmp/made");
    scene::Background script(AtWork::commandFor({drive}));
    ASSERT_TRUE(scene::appears("/tmp/made"));
    ::kill(script.pid(), signal);
    EXPECT_EQ(script.wait(), 128 + signal) << AtWork::said();
    EXPECT_FALSE(scene::exists(claim));
    EXPECT_EQ(AtWork::said(), "");
  }
}

TEST(ScaffoldPairs, noClaimStaysWhereverAScriptStops) {
  makeProjectWithScript();
  makeScript(tools + "/codesign", "#!/bin/sh\nexit 3\n");
  EXPECT_EQ(build().status, 3);
  fs::remove(tools + "/codesign");
  EXPECT_EQ(build({"--external-drive=/Volumes/None"}).status, 1);
  EXPECT_EQ(build({"--help"}).status, 0);
  EXPECT_EQ(build({"--no-install"}).status, 0);
  scene::write(project + "/Makefile", "all:\n\t@kill -INT $$PPID; kill -INT $$$$\n");
  EXPECT_NE(build().status, 0);
  EXPECT_FALSE(scene::exists(claim));
}

TEST(ScaffoldPairs, theLineThatRemovesAClaimHoldsForEveryName) {
  makeScript("/usr/local/bin/ran", "#!/bin/sh\ntouch /tmp/mark\n");
  for (const std::string name :
       {"$(ran)", "`ran`", "it's \"a\"; ran", "one\nran", "..", "-n", "Caf\xc3\xa9"}) {
    const std::string folder = "/Users/me/" + std::string(name == ".." ? "x" : name);
    makeProjectWithScript({"--app-name", name, "--force"}, folder);
    scene::makeFolder("/tmp/" + name + ".run");
    const auto run = build({}, folder, {"LC_ALL=C.UTF-8"});
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(run.err.starts_with("another build.command is at work on " + name + ", or was ")) << run.err;
    removeClaimAsTold(run.err);
    EXPECT_FALSE(scene::exists("/tmp/" + name + ".run"));
    EXPECT_FALSE(scene::exists("/tmp/mark"));
  }
}

TEST(ScaffoldPairs, whateverElseStandsInPlaceOfTheClaimIsLeftAndNamed) {
  makeProjectWithScript();
  scene::makeFolder("/tmp/else");
  for (const bool isLink : {false, true}) {
    fs::remove(claim);
    isLink ? scene::link(claim, "/tmp/else") : scene::write(claim, "mine");
    const auto before = scene::tree(claim);
    const auto run = build();
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_NE(run.err.find(claim), std::string::npos) << run.err;
    EXPECT_NE(run.err.find("File exists"), std::string::npos) << run.err;
    EXPECT_EQ(run.err.find("rmdir"), std::string::npos) << "that would not help";
    EXPECT_EQ(scene::tree(claim), before);
  }
  EXPECT_FALSE(scene::exists(project + "/build"));
}

TEST(ScaffoldPairs, aLinkThatEndedUpElsewhereIsTold) {
  makeProjectWithScript();
  const std::string problem = installed + " doesn't lead to " + onDrive + "\n";
  for (const std::string appears : {"mkdir \"$3\"", "ln -s /tmp \"$3\""}) {
    fs::remove_all(installed);
    makeScript(tools + "/ln", "#!/bin/sh\nPATH=/usr/bin; " + appears + "\nexec ln \"$@\"\n");
    const auto run = build({drive});
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(run.err.ends_with(problem)) << run.err;
    EXPECT_EQ(run.out.find("Done."), std::string::npos);
  }
}

}  // namespace
