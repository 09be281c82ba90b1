#include <gtest/gtest.h>

#include "tests/cli/ScaffoldScenes.h"
#include "tests/support/Patterns.h"

/// The generated script, run for real: its arguments, its two roads, and what it does with what stands in the
/// way.

using namespace scaffolds;
using expected::printed;
using expected::shown;

namespace {

namespace fs = std::filesystem;

const std::string begun = "==> compile\n==> ad-hoc sign build/Paper Kite.app\n";
const std::string done = "==> Done.\nLaunch: open \"/Applications/Paper Kite.app\"\n";
const std::string toApplications = "==> install to /Applications/Paper Kite.app\n";
const std::string toDrive = "==> install to drive: " + onDrive + "\n";
const std::string linking = "==> symlink /Applications -> drive\n";
const std::string resigned = "build/Paper Kite.app: replacing existing signature\n";

std::string moved(const std::string& from, const std::string& name) {
  return "    moved " + from + " -> " + stash + "/" + name + "\n";
}

/// All that a script of another project must leave alone.
std::vector<std::string> elsewhere() {
  auto all = scene::tree("/Applications");
  for (const std::string place : {"/Volumes", "/Users/me/tmp", "/tmp"}) {
    const auto more = scene::tree(place);
    all.insert(all.end(), more.begin(), more.end());
  }
  return all;
}

/// An older version at a place, with a file that the new one doesn't have; its tree.
std::vector<std::string> makeOld(const std::string& bundle, const std::string& text = "old") {
  scene::makeApp(bundle);
  scene::write(bundle + "/Contents/Resources/only here", text);
  return scene::tree(bundle);
}

TEST(ScaffoldInstall, copiesTheSignedBundleToApplications) {
  makeProjectWithScript();
  EXPECT_EQ(shown(build()), printed(begun + toApplications + done));
  EXPECT_EQ(scene::tree(installed), scene::tree(built));
  EXPECT_EQ(said(installed), "version 1\n");
  EXPECT_EQ(scene::run({"codesign", "--verify", "--deep", "--strict", installed}).status, 0);
  EXPECT_FALSE(scene::exists(stash)) << "there was nothing to move";
  EXPECT_FALSE(scene::exists("/Volumes/X9/ExternalQuarn"));
}

TEST(ScaffoldInstall, copiesToADriveAndLinks) {
  makeProjectWithScript();
  for (const std::string option : {"/Volumes/X9", "/Volumes/X9/"}) {
    fs::remove_all(apps);
    fs::remove(installed);
    fs::remove_all(built);
    EXPECT_EQ(shown(build({"--external-drive=" + option})), printed(begun + toDrive + linking + done));
    EXPECT_EQ(scene::tree(onDrive), scene::tree(built));
    EXPECT_EQ(scene::target(installed), onDrive);
    EXPECT_EQ(said(installed), "version 1\n");
  }
  EXPECT_FALSE(scene::exists(stash));
  EXPECT_NE(scene::quarn({"health", "check"}).out.find("Healthy: 1   Problems: 0"), std::string::npos)
      << "it is laid out as what quarn moves";
}

TEST(ScaffoldInstall, takesTheDefaultDriveUnlessOneIsGiven) {
  makeProjectWithScript({"--default-drive", "/Volumes/X9"});
  EXPECT_EQ(shown(build()), printed(begun + toDrive + linking + done));
  fs::remove_all(built);
  scene::makeFolder("/Volumes/Y9");
  EXPECT_EQ(build({"--external-drive=/Volumes/Y9"}).status, 0);
  EXPECT_EQ(scene::target(installed), "/Volumes/Y9/ExternalQuarn/Apps/Paper Kite.app");
  EXPECT_EQ(build({"--external-drive="}).status, 0) << "an empty one counts as not given";
  EXPECT_EQ(scene::target(installed), onDrive);
}

TEST(ScaffoldInstall, takesAnEmptyDriveForNone) {
  makeProjectWithScript();
  EXPECT_EQ(shown(build({"--external-drive="})), printed(begun + toApplications + done));
}

TEST(ScaffoldInstall, onlyBuildsWhenItIsToldTo) {
  makeProjectWithScript({"--default-drive", "/Volumes/None"});
  const auto before = elsewhere();
  EXPECT_EQ(shown(build({"--no-install"})), printed(begun + "Done (no install).\n"));
  EXPECT_EQ(elsewhere(), before);
  EXPECT_TRUE(scene::exists(built + "/Contents/_CodeSignature"));
}

TEST(ScaffoldInstall, takesAnotherNameForOneRun) {
  makeProjectWithScript();
  EXPECT_EQ(shown(build({drive, "--app-name=An Other"})),
            printed(begun + "==> install to drive: " + apps + "/An Other.app\n" + linking +
                    "==> Done.\nLaunch: open \"/Applications/An Other.app\"\n"));
  EXPECT_EQ(scene::tree(apps + "/An Other.app"), scene::tree(built));
  EXPECT_EQ(scene::target("/Applications/An Other.app"), apps + "/An Other.app");
  EXPECT_FALSE(scene::exists(installed));
}

TEST(ScaffoldInstall, theLastOfTwoArgumentsCounts) {
  makeProjectWithScript();
  EXPECT_EQ(build({"--app-name=A", "--external-drive=/none", "--app-name=Paper Kite", drive}).status, 0);
  EXPECT_EQ(scene::target(installed), onDrive);
}

TEST(ScaffoldInstall, showsItsUsageAndBuildsNothing) {
  makeProjectWithScript();
  const std::string usage =
      "Usage: build.command [--external-drive=<path>] [--app-name=<Name>] [--no-install]\n"
      "  --external-drive=<path>   install to <path>/ExternalQuarn/Apps/<Name>.app\n"
      "                            and symlink /Applications/<Name>.app -> that path\n"
      "  --app-name=<Name>         override app name for this run\n"
      "  --no-install              build only, no deploy\n"
      "Without a drive, given here or as DEFAULT_DRIVE in the script: install to /Applications/<Name>.app\n";
  EXPECT_EQ(shown(build({"-h"})), printed(usage));
  EXPECT_EQ(shown(build({drive, "--help", "--nonsense"})), printed(usage));
  EXPECT_FALSE(scene::exists(project + "/build"));
}

TEST(ScaffoldInstall, refusesArgumentsThatItDoesntKnow) {
  makeProjectWithScript();
  const std::pair<Words, std::string> rows[] = {
      {{"--nonsense"}, "unknown arg: --nonsense\n"},
      {{""}, "unknown arg: \n"},
      {{"-n"}, "unknown arg: -n\n"},
      {{drive, "Paper Kite"}, "unknown arg: Paper Kite\n"},
      {{"--no-install=1"}, "unknown arg: --no-install=1\n"},
      {{"--app-name", "Kite"}, "unknown arg: --app-name\n"},
      {{"--external-drive", "/Volumes/X9"}, "use --external-drive=<path> (with =)\n"},
      {{"--external-drive=X9"}, "external drive needs an absolute path: X9\n"},
      {{"--external-drive=./X9"}, "external drive needs an absolute path: ./X9\n"},
      {{"--app-name="}, "app name must not be empty or have a slash: \n"},
      {{"--app-name=/"}, "app name must not be empty or have a slash: /\n"},
      {{"--app-name=../../Users/me/x"}, "app name must not be empty or have a slash: ../../Users/me/x\n"},
      {{"--app-name=Utilities/x", drive}, "app name must not be empty or have a slash: Utilities/x\n"},
  };
  const auto before = elsewhere();
  for (const auto& [words, message] : rows) EXPECT_EQ(shown(build(words)), shown({2, "", message}));
  EXPECT_EQ(elsewhere(), before);
  EXPECT_FALSE(scene::exists(project + "/build"));
}

TEST(ScaffoldInstall, takesDotsForAName) {
  makeProjectWithScript();
  EXPECT_EQ(build({"--app-name=.."}).status, 0);
  EXPECT_EQ(scene::tree("/Applications/...app"), scene::tree(built));
}

TEST(ScaffoldInstall, saysThatADriveIsMissing) {
  makeProjectWithScript();
  scene::write("/Volumes/file", "a file");
  scene::link("/Volumes/link", "/Volumes/gone");
  makeOld(installed);
  const auto before = elsewhere();
  for (const std::string place : {"/Volumes/None", "/Volumes/file", "/Volumes/link", "/Volumes/X9/None"}) {
    fs::remove_all(built);
    EXPECT_EQ(shown(build({"--external-drive=" + place})),
              shown({1, begun, "external drive not mounted: " + place + "\n"}));
  }
  EXPECT_EQ(elsewhere(), before);
}

TEST(ScaffoldInstall, movesWhatStandsInApplicationsAsideWhole) {
  makeProjectWithScript();
  stopTheClock();
  const auto old = makeOld(installed);
  EXPECT_EQ(shown(build()),
            printed(begun + toApplications + moved(installed, "Paper Kite.app-" + moment) + done));
  EXPECT_EQ(scene::tree(stash + "/Paper Kite.app-" + moment), old);
  EXPECT_EQ(scene::tree(installed), scene::tree(built)) << "and nothing of the old one in the new one";
  EXPECT_EQ(scene::tree(stash).size(), old.size() + 1) << "and nothing else in the stash";
}

TEST(ScaffoldInstall, movesBothAsideOnTheWayToADrive) {
  makeProjectWithScript();
  stopTheClock();
  const auto old = makeOld(installed, "home"), oldOnDrive = makeOld(onDrive, "drive");
  EXPECT_EQ(shown(build({drive})),
            printed(begun + toDrive + moved(onDrive, "Paper Kite.app-" + moment) + linking +
                    moved(installed, "Paper Kite.app-" + moment + "-2") + done));
  EXPECT_EQ(scene::tree(stash + "/Paper Kite.app-" + moment), oldOnDrive);
  EXPECT_EQ(scene::tree(stash + "/Paper Kite.app-" + moment + "-2"), old);
  EXPECT_EQ(scene::tree(onDrive), scene::tree(built));
  EXPECT_EQ(scene::target(installed), onDrive);
}

TEST(ScaffoldInstall, namesWhatItMovesAfterTheTime) {
  makeProjectWithScript();
  makeOld(installed);
  const std::string line("    moved /Applications/Paper Kite\\.app -> " + stash +
                         "/Paper Kite\\.app-20[0-9]{2}[01][0-9][0-3][0-9]_[0-2][0-9][0-5][0-9][0-6][0-9]\n");
  EXPECT_TRUE(patterns::search(build().out, line));
}

TEST(ScaffoldInstall, keepsEachOfManyVersionsThatGoWithinOneSecond) {
  makeProjectWithScript();
  stopTheClock();
  std::vector<std::vector<std::string>> versions;
  for (int n = 1; n <= 5; ++n) {
    scene::write(project + "/version", std::to_string(n));
    fs::remove_all(built);
    const auto run = build({n % 2 == 0 ? drive : "--external-drive="});
    ASSERT_EQ(run.status, 0) << run.out << run.err;
    versions.push_back(scene::tree(built));
  }
  // The second to the fifth run each met the one before; what is on the drive was met by the fourth.
  const std::string first = stash + "/Paper Kite.app-" + moment;
  EXPECT_EQ(scene::tree(first), versions[0]);
  EXPECT_EQ(scene::target(first + "-2"), onDrive);
  EXPECT_EQ(scene::tree(first + "-3"), versions[1]);
  EXPECT_EQ(scene::tree(first + "-4"), versions[2]);
  EXPECT_EQ(scene::target(first + "-5"), onDrive);
  EXPECT_EQ(scene::tree(installed), versions[4]);
  EXPECT_EQ(scene::tree(onDrive), versions[3]);
}

TEST(ScaffoldInstall, passesByNamesThatAnythingHas) {
  makeProjectWithScript();
  stopTheClock();
  const std::string name = stash + "/Paper Kite.app-" + moment;
  scene::makeFolder(name);
  scene::write(name + "-2", "a file");
  scene::link(name + "-3", "nowhere");
  const auto old = makeOld(installed);
  EXPECT_EQ(build().status, 0);
  EXPECT_EQ(scene::tree(name + "-4"), old);
  EXPECT_EQ(scene::tree(name).size(), 1u);
  EXPECT_EQ(scene::read(name + "-2"), "a file");
  EXPECT_EQ(scene::target(name + "-3"), "nowhere");
}

TEST(ScaffoldInstall, movesALinkAndLeavesWhatItLeadsTo) {
  makeProjectWithScript();
  stopTheClock();
  for (const std::string target : {"/Users/me/Elsewhere.app", "/Volumes/gone/Paper Kite.app"}) {
    fs::remove_all("/Users/me/Elsewhere.app");
    fs::remove_all(stash);
    fs::remove_all(installed);
    fs::remove_all(onDrive);
    const auto old = makeOld("/Users/me/Elsewhere.app");
    scene::link(installed, target);
    scene::link(onDrive, target);
    EXPECT_EQ(build({drive}).status, 0);
    EXPECT_EQ(scene::tree("/Users/me/Elsewhere.app"), old);
    EXPECT_EQ(scene::target(stash + "/Paper Kite.app-" + moment), target);
    EXPECT_EQ(scene::target(stash + "/Paper Kite.app-" + moment + "-2"), target);
    EXPECT_EQ(scene::tree(onDrive), scene::tree(built));
    EXPECT_EQ(scene::target(installed), onDrive);
  }
}

TEST(ScaffoldInstall, movesAFileThatStandsInTheWay) {
  makeProjectWithScript();
  stopTheClock();
  scene::write(installed, "a file");
  EXPECT_EQ(build().status, 0);
  EXPECT_EQ(scene::read(stash + "/Paper Kite.app-" + moment), "a file");
  EXPECT_EQ(scene::tree(installed), scene::tree(built));
}

TEST(ScaffoldInstall, namesTheOldOneBeforeACopyThatFails) {
  makeProjectWithScript();
  stopTheClock();
  const auto old = makeOld(installed);
  scene::replaceTool("/usr/bin/ditto",
                     "#!/bin/sh\nmkdir \"$3\"\necho 'ditto: x: No space left on device' >&2\nexit 1\n");
  EXPECT_EQ(shown(build()), shown({1, begun + toApplications + moved(installed, "Paper Kite.app-" + moment),
                                   "ditto: x: No space left on device\n"}));
  EXPECT_EQ(scene::tree(stash + "/Paper Kite.app-" + moment), old);
}

TEST(ScaffoldInstall, leavesTheLinkWhenTheCopyToTheDriveFails) {
  makeProjectWithScript();
  const auto old = makeOld(installed);
  scene::replaceTool("/usr/bin/ditto", "#!/bin/sh\nexit 1\n");
  EXPECT_EQ(shown(build({drive})), shown({1, begun + toDrive, ""}));
  EXPECT_EQ(scene::tree(installed), old);
}

TEST(ScaffoldInstall, stopsWhereAnythingFails) {
  makeProjectWithScript();
  const auto before = elsewhere();
  makeScript(tools + "/codesign", "#!/bin/sh\necho \"codesign says no\" >&2\nexit 3\n");
  EXPECT_EQ(shown(build()), shown({3, begun, "codesign says no\n"}));
  fs::remove(tools + "/codesign");
  scene::removeTool("/usr/bin/codesign");
  const auto unsignedRun = build();
  EXPECT_EQ(unsignedRun.status, 127);
  EXPECT_NE(unsignedRun.err.find("codesign: command not found"), std::string::npos) << unsignedRun.err;
  scene::write(project + "/Makefile", "all:\n\t@exit 7\n");
  const auto unbuilt = build();
  EXPECT_EQ(unbuilt.status, 2);
  EXPECT_EQ(unbuilt.out, "==> compile\n");
  EXPECT_EQ(elsewhere(), before);
}

TEST(ScaffoldInstall, saysThatThereIsNoBundle) {
  makeProjectWithScript({"--bin-src", "out/Kite.app"});
  scene::write(project + "/out/Kite.app", "a file");
  EXPECT_EQ(shown(build()),
            shown({1, "==> compile\n",
                   "expected built bundle at out/Kite.app — adjust BIN_SRC in build.command\n"}));
}

TEST(ScaffoldInstall, movesNothingWhenTheStashCantBeUsed) {
  makeProjectWithScript();
  makeOld(installed);
  scene::makeFolder(stash);
  fs::permissions(stash, fs::perms(0555));
  const auto before = elsewhere();
  fs::remove_all(built);
  const auto closed = build();
  EXPECT_EQ(closed.status, 1);
  EXPECT_EQ(closed.out, begun + toApplications);
  EXPECT_TRUE(closed.err.starts_with("mv: ") && closed.err.ends_with(": Permission denied\n")) << closed.err;
  EXPECT_EQ(elsewhere(), before);
  fs::permissions(stash, fs::perms(0755));
  // Nothing may be taken out of a folder without the right to write.
  fs::permissions("/Applications", fs::perms(0555));
  const auto run = build();
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, begun + toApplications);
  fs::permissions("/Applications", fs::perms(0755));
  EXPECT_EQ(scene::tree(stash).size(), 1u);
}

TEST(ScaffoldInstall, movesNothingAwayThatIsStillNeeded) {
  const std::string itself = "/Applications/Paper Kite.app";
  makeProjectWithScript({"--bin-src", itself});
  makeOld(itself);
  scene::makeFolder(stash);
  EXPECT_EQ(build({"--no-install"}).status, 0);
  const auto before = elsewhere();
  const auto refusal = [](const std::string& needed) {
    return "can't move /Applications/Paper Kite.app aside: " + needed + " would go with it\n";
  };
  EXPECT_EQ(build().err, itself + ": replacing existing signature\n" + refusal(itself));
  scene::write(itself + "/Contents/Helpers/H.app/Contents/x", "x");
  ASSERT_EQ(generate({"--force", "--bin-src", itself + "/Contents/Helpers/H.app"}).status, 0);
  EXPECT_EQ(build().err, refusal(itself + "/Contents/Helpers/H.app"));
  fs::remove_all(itself + "/Contents/Helpers");
  ASSERT_EQ(generate({"--force"}).status, 0);
  scene::makeFolder(itself + "/tmp");
  EXPECT_EQ(build({}, project, {"TMPDIR=" + itself + "/tmp"}).err, refusal(itself + "/tmp/QuarnTrash"));
  fs::remove_all(itself + "/tmp");
  EXPECT_EQ(elsewhere(), before) << "the last one left an empty folder in what is gone now";
}

TEST(ScaffoldInstall, linksNoApplicationToItself) {
  makeProjectWithScript();
  const auto old = makeOld(installed);
  scene::makeFolder("/Volumes/X9/ExternalQuarn");
  scene::link(apps, "/Applications");
  EXPECT_EQ(shown(build({drive})),
            shown({1, begun, "can't install to a drive: " + apps + " is /Applications\n"}));
  EXPECT_EQ(scene::tree(installed), old);
  EXPECT_FALSE(scene::exists(stash));
}

TEST(ScaffoldInstall, installsWhatALinkThatItReplacesLeadsTo) {
  makeProjectWithScript();
  stopTheClock();
  EXPECT_EQ(build({"--no-install"}).status, 0);
  scene::link(installed, built);
  EXPECT_EQ(
      shown(build()),
      shown({0, begun + toApplications + moved(installed, "Paper Kite.app-" + moment) + done, resigned}));
  EXPECT_EQ(scene::tree(installed), scene::tree(built));
}

TEST(ScaffoldInstall, usesTheSystemsTemporaryFolderWithoutOneOfTheUser) {
  makeProjectWithScript();
  stopTheClock();
  const auto old = makeOld(installed);
  EXPECT_EQ(build({}, project, {"TMPDIR="}).status, 0);
  EXPECT_EQ(scene::tree("/tmp/QuarnTrash/Paper Kite.app-" + moment), old);
}

TEST(ScaffoldInstall, doublesNoSlashBehindTheTemporaryFolder) {
  makeProjectWithScript();
  stopTheClock();
  const std::pair<std::string, std::string> rows[] = {
      {temporary + "/", stash}, {temporary, stash}, {"/", "/QuarnTrash"}, {"", "/tmp/QuarnTrash"}};
  for (const auto& [folder, expected] : rows) {
    fs::remove_all(stash);
    const auto old = makeOld(installed);
    const std::string place = expected + "/Paper Kite.app-" + moment;
    const auto run = build({}, project, {"TMPDIR=" + folder});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_NE(run.out.find("    moved " + installed + " -> " + place + "\n"), std::string::npos) << run.out;
    EXPECT_EQ(scene::tree(place), old);
  }
}

TEST(ScaffoldInstall, worksInItsOwnFolderWhereverItIsStarted) {
  makeProjectWithScript();
  scene::link("/Users/me/by link", project);
  scene::makeFolder("/Users/me/decoy/Paper Kite");
  const std::string starts[] = {
      "'" + project + "/build.command'",
      "cd / && 'Users/me/Paper Kite/build.command'",
      "cd '" + project + "' && ./build.command",
      "cd '" + project + "' && bash build.command",
      "cd '" + project + "/..' && CDPATH=/Users/me/decoy bash 'Paper Kite/build.command'",
      "'/Users/me/by link/build.command'",
      "bash --posix '" + project + "/build.command'",
      "cd '" + project + "' && PATH=$PWD:$PATH build.command"};
  for (const std::string& start : starts) {
    fs::remove_all(project + "/build");
    const auto run = scene::shell("(" + start + " --no-install)");
    EXPECT_EQ(shown(run), printed(begun + "Done (no install).\n")) << start;
    EXPECT_TRUE(scene::exists(built)) << start;
  }
  EXPECT_EQ(scene::tree("/Users/me/decoy").size(), 2u);
}

TEST(ScaffoldInstall, worksInTheFolderThatItIsWrittenTo) {
  makeProject("/Users/me/Elsewhere/Paper Kite");
  scene::makeFolder(project);
  ASSERT_EQ(generate({"-o", "/Users/me/Elsewhere/Paper Kite/x.sh", "--preset", "make"}).status, 0);
  EXPECT_EQ(scene::run({"/Users/me/Elsewhere/Paper Kite/x.sh"}).status, 0);
  EXPECT_EQ(scene::tree(installed), scene::tree("/Users/me/Elsewhere/Paper Kite/build/Paper Kite.app"));
}

TEST(ScaffoldInstall, comesBackToItsFolderFromABuildThatLeftIt) {
  makeProjectWithScript({"--preset", "make"});
  std::string text = scene::read(project + "/build.command");
  text.replace(text.find("\n  make\n"), 8, "\n  make\n  cd /Users\n");
  makeScript(project + "/build.command", text);
  EXPECT_EQ(shown(build()), printed(begun + toApplications + done));
}

TEST(ScaffoldInstall, takesABundleByItsAbsolutePath) {
  makeProjectWithScript({"--bin-src", built});
  EXPECT_EQ(shown(build()), printed("==> compile\n==> ad-hoc sign " + built + "\n" + toApplications + done));
  EXPECT_EQ(scene::tree(installed), scene::tree(built));
}

}  // namespace
