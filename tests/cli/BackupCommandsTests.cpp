#include <filesystem>
#include <gtest/gtest.h>

#include "tests/cli/BackupScenes.h"
#include "tests/cli/Expected.h"
#include "tests/cli/Two.h"
#include "tests/support/Patterns.h"
#include "tests/support/SpecialFiles.h"

using namespace backups;
using namespace expected;

namespace {

namespace fs = std::filesystem;

std::string backupAt(const std::string& id) {
  return folder + "/" + id;
}

/// A run that made this one backup.
std::string made(const std::string& id) {
  return printed("backup\t" + id + "\t" + backupAt(id) + "\n");
}

TEST(BackupCommands, makeABackupAndListIt) {
  setScene();
  const auto sourceBefore = scene::tree(source), appBefore = scene::tree(app);
  const auto run = create();
  const std::string id = idOf(run);
  EXPECT_TRUE(patterns::match(id, "[0-9]{8}_[0-9]{6}")) << run.out << run.err;
  EXPECT_EQ(shown(run), made(id));
  EXPECT_EQ(shown(list()), printed(id + "\t" + backupAt(id) + "\n"));
  EXPECT_EQ(scene::tree(source), sourceBefore);
  EXPECT_EQ(scene::tree(app), appBefore);
  EXPECT_EQ(fault::names(backupAt(id)), (Lines{"InstalledApp.app", "SourceApp", "backup.json"}));
  EXPECT_EQ(scene::read(backupAt(id) + "/SourceApp/AppCore/deep/app/App.h"), "words all the way down");
  EXPECT_EQ(scene::read(backupAt(id) + "/InstalledApp.app/Contents/MacOS/app"),
            scene::read(app + "/Contents/MacOS/quarn"));
  EXPECT_TRUE(fs::is_directory(backupAt(id) + "/SourceApp/app-empty"));
}

TEST(BackupCommands, takeTheCurrentFolderWhereNoSourceIsNamed) {
  scene::write("/Users/me/Projects/tool/a", "a");
  const auto run = create({.folder = "/Users/me/Projects/tool"});
  EXPECT_EQ(scene::read(backupAt(idOf(run)) + "/tool/a"), "a") << run.err;
}

TEST(BackupCommands, readANamedSourceFromTheCurrentFolder) {
  scene::write("/Users/me/Projects/tool/a", "a");
  scene::RunOptions options = from("tool/.");
  options.folder = "/Users/me/Projects";
  EXPECT_EQ(scene::read(backupAt(idOf(create(options))) + "/tool/a"), "a");
}

TEST(BackupCommands, madeOfNothingHoldNothing) {
  const std::string id = idOf(create(from("/Users/me/gone")));
  EXPECT_EQ(fault::names(backupAt(id)), Lines{"backup.json"});
  const std::string record = scene::read(backupAt(id) + "/backup.json");
  EXPECT_TRUE(record.ends_with(",\"sourceFileCount\":0,\"backupFileCount\":0}")) << record;
}

TEST(BackupCommands, sayWhatHadToMakeRoom) {
  scene::write(source + "/quarn-notes.txt", "with the word");
  scene::write(source + "/app-notes.txt", "without it");
  const auto run = create();
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err,
            "warning\t“" + backupAt(idOf(run)) +
                "/SourceApp/app-notes.txt” had to make room for an item of the same name, and is in " +
                scene::driveTrash() + "/app-notes.txt now.\n");
  EXPECT_EQ(scene::read(scene::driveTrash() + "/app-notes.txt"), "without it");
}

TEST(BackupCommands, listNothingWhereThereIsNone) {
  EXPECT_EQ(shown(list()), printed(""));
  EXPECT_EQ(shown(list("/Volumes/Gone")), printed(""));
}

TEST(BackupCommands, listInTheOrderOfTheIdentifiers) {
  setScene();
  const std::string first = idOf(create()), second = idOf(create());
  ASSERT_LT(first, second);
  EXPECT_EQ(list().out, first + "\t" + backupAt(first) + "\n" + second + "\t" + backupAt(second) + "\n");
}

TEST(BackupCommands, wantADriveThatIsThere) {
  setScene();
  EXPECT_EQ(shown(scene::quarn({"backup", "create", "--target-drive", "/Volumes/Gone"}, from(source))),
            failed("No drive is mounted there: /Volumes/Gone"));
  EXPECT_EQ(shown(scene::quarn({"backup", "create", "--target-drive", "/Users/me/Gone"}, from(source))),
            failed("No drive is mounted there: /Users/me/Gone"));
  EXPECT_FALSE(scene::exists("/Users/me/Gone"));
  EXPECT_FALSE(scene::exists("/Volumes/Gone"));
  EXPECT_EQ(shown(scene::quarn({"backup", "create", "--target-drive", ""}, from(source))),
            failed("Missing --target-drive."));
}

TEST(BackupCommands, refuseASourceThatHoldsTheBackups) {
  EXPECT_EQ(shown(create({.folder = "/Volumes/X9"})),
            failed("The backups would lie in what is backed up: /Volumes/X9"));
  EXPECT_EQ(fault::names("/Volumes/X9"), Lines{});
}

TEST(BackupCommands, keepEveryName) {
  const Lines names = {
      "a b",     "\"quoted\"", "it's", "tab\there", "line\nfeed", "caf\u00e9",          "cafe\u0301",
      "-quarn-", "$(quarn)",   "*",    " ",         "qua\\rn",    std::string(255, 'x')};
  for (const std::string& name : names) scene::write(source + "/" + name + "/" + name, name);
  const auto run = create();
  const std::string copy = backupAt(idOf(run)) + "/SourceApp/";
  for (std::string name : names) {
    const std::string original = name;
    if (const auto at = name.find("quarn"); at != std::string::npos) name.replace(at, 5, "app");
    EXPECT_EQ(scene::read(copy + name + "/" + name), original);
  }
  EXPECT_EQ(fault::names(copy).size(), names.size());
}

TEST(BackupCommands, makeNoneOfWhatCannotBeReadWhole) {
  scene::write(source + "/a", "a");
  scene::write(source + "/secret", "secret");
  fs::permissions(source + "/secret", fs::perms::none);
  const auto run = create();
  EXPECT_EQ(run.status, 1) << run.out;
  EXPECT_EQ(run.out, "");
  EXPECT_TRUE(run.err.starts_with("error\t")) << run.err;
  EXPECT_EQ(list().out, "");
}

TEST(BackupCommands, makeNoneOfASocketOrADeviceAndSayWhich) {
  scene::write(source + "/a", "a");
  ASSERT_TRUE(makeSocket(source + "/ear"));
  EXPECT_EQ(shown(create()),
            failed("“ear” is a socket or a device, which can't be copied. Remove it first."));
  EXPECT_FALSE(scene::exists(folder)) << "found before anything is made";
}

TEST(BackupCommands, nameWhatLiesInFoldersThatMayNotBeChanged) {
  scene::write(source + "/cache/quarn-1", "one");
  scene::write(source + "/sub/quarn/a", "with the word");
  scene::write(source + "/sub/app/b", "in the way");
  for (const std::string each : {"/cache", "/sub/quarn", "/sub/app", "/sub"})
    fs::permissions(source + each, fs::perms::owner_read | fs::perms::owner_exec);
  const auto before = scene::tree(source);
  const auto run = create();
  const std::string copy = backupAt(idOf(run)) + "/SourceApp";
  EXPECT_EQ(scene::read(copy + "/cache/app-1"), "one") << run.err;
  EXPECT_EQ(scene::read(copy + "/sub/app/a"), "with the word");
  EXPECT_EQ(scene::read(scene::driveTrash() + "/app/b"), "in the way");
  for (const std::string& each :
       {copy + "/cache", copy + "/sub", copy + "/sub/app", scene::driveTrash() + "/app"})
    EXPECT_EQ(fs::status(each).permissions(), fs::perms::owner_read | fs::perms::owner_exec) << each;
  EXPECT_EQ(scene::tree(source), before);
}

TEST(BackupCommands, refuseASourceThatIsCalledAsTheRecord) {
  for (const std::string name : {"backup.json", "Backup.JSON"}) {
    scene::write("/Users/me/" + name, "precious");
    EXPECT_EQ(shown(create(from("/Users/me/" + name))),
              failed("The record of the backup has that name: /Users/me/" + name));
  }
  EXPECT_FALSE(scene::exists(folder));
}

TEST(BackupCommands, refuseASourceThatIsASocket) {
  scene::makeFolder(source);
  ASSERT_TRUE(makeSocket(source + "/ear"));
  EXPECT_EQ(shown(create(from(source + "/ear"))),
            failed("“ear” is a socket or a device, which can't be copied. Remove it first."));
  EXPECT_FALSE(scene::exists(folder));
}

TEST(BackupCommands, holdAVolumeThatIsTheSource) {
  if (!scene::hasMounts()) GTEST_SKIP() << "drives can't be mounted in this room";
  scene::plug("Image", "1m");
  scene::write("/Volumes/Image/quarn.cpp", "on an image");
  EXPECT_EQ(scene::read(backupAt(idOf(create(from("/Volumes/Image")))) + "/Image/app.cpp"), "on an image");
}

TEST(BackupCommands, warnOfAVariableThatNamesNothing) {
  const auto run = create(from("~/src"));
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, "warning\tNothing is there to back up: /Users/me/~/src (QUARN_SOURCE_ROOT)\n");
}

TEST(BackupCommands, wantACurrentFolderWhereItCounts) {
  const std::string gone = "mkdir /tmp/gone && cd /tmp/gone && rmdir /tmp/gone && ";
  const std::string line = "quarn backup create --target-drive /Volumes/X9";
  for (const std::string& variable : {std::string(), std::string("QUARN_SOURCE_ROOT=src ")}) {
    const auto run = scene::shell(gone + variable + line);
    EXPECT_EQ(run.status, 1);
    // The script that starts the program may complain, too.
    EXPECT_TRUE(run.err.ends_with("error\tThe current folder no longer exists.\n")) << run.err;
  }
  scene::write(source + "/a", "a");
  EXPECT_EQ(scene::shell(gone + "QUARN_SOURCE_ROOT=" + source + " " + line).status, 0);
}

TEST(BackupCommands, holdManyFiles) {
  if (scene::inProot()) GTEST_SKIP() << "proot would take minutes for so many files";
  constexpr int folders = 100, files = 1'000;
  ASSERT_EQ(scene::shell("mkdir -p " + source + " && cd " + source + " && for f in $(seq " +
                         std::to_string(folders) + "); do mkdir quarn$f && (cd quarn$f && seq -f quarn%g " +
                         std::to_string(files) + " | xargs touch); done")
                .status,
            0);
  const std::string id = idOf(create());
  const std::string count = std::to_string(folders * files);
  EXPECT_TRUE(scene::read(backupAt(id) + "/backup.json")
                  .ends_with("\"sourceFileCount\":" + count + ",\"backupFileCount\":" + count + "}"));
  EXPECT_TRUE(scene::exists(backupAt(id) + "/SourceApp/app100/app1000"));
}

TEST(BackupCommands, copyLinksThatLoopAsLinks) {
  scene::link(source + "/loop", "loop");
  scene::link(source + "/up", "..");
  scene::link(source + "/root", "/");
  const std::string copy = backupAt(idOf(create())) + "/SourceApp";
  EXPECT_EQ(scene::target(copy + "/loop"), "loop");
  EXPECT_EQ(scene::target(copy + "/up"), "..");
  EXPECT_EQ(scene::target(copy + "/root"), "/");
}

TEST(BackupCommands, writeNothingThroughALinkToSomewhereElse) {
  setScene();
  scene::makeFolder("/Users/me/Elsewhere");
  scene::link(folder, "/Users/me/Elsewhere");
  EXPECT_EQ(shown(create()), failed("The folder for backups isn’t on the drive: /Users/me/Elsewhere"));
  EXPECT_EQ(fault::names("/Users/me/Elsewhere"), Lines{});
}

TEST(BackupCommands, mayLieBehindALinkToAFolderOfTheDrive) {
  setScene();
  scene::makeFolder("/Volumes/X9/Kept");
  scene::link(folder, "Kept");
  const std::string id = idOf(create());
  EXPECT_EQ(fault::names("/Volumes/X9/Kept"), Lines{id});
  EXPECT_EQ(list().out, id + "\t" + backupAt(id) + "\n");
}

TEST(BackupCommands, ofTwoRunsAtOnceEachMakesItsOwn) {
  setScene();
  const std::string line = "QUARN_SOURCE_ROOT=" + source + " quarn backup create --target-drive /Volumes/X9";
  for (const int gap : {0, 0, 5, 30}) {
    fs::remove_all(folder);
    const turns::Two two(line, line, turns::milliseconds(gap));
    EXPECT_TRUE(two.first.starts_with("backup\t")) << two.all();
    EXPECT_TRUE(two.second.starts_with("backup\t")) << two.all();
    EXPECT_NE(two.first, two.second);
    const auto made = fault::names(folder);
    ASSERT_EQ(made.size(), 2U) << two.all();
    for (const std::string name : {"/SourceApp", "/InstalledApp.app"})
      EXPECT_EQ(scene::tree(backupAt(made[0]) + name), scene::tree(backupAt(made[1]) + name));
    EXPECT_EQ(fault::contents(backupAt(made[0]) + "/SourceApp").size(), 3U);
  }
}

TEST(BackupCommands, waitForARunThatHasTheTurn) {
  setScene();
  fault::replaceDitto("touch /tmp/copying; sleep 0.6; " + fault::realDitto);
  scene::Background move({"/bin/sh", "-c", "exec quarn move one " + app + " --yes --no-data >/dev/null"});
  ASSERT_TRUE(scene::appears("/tmp/copying"));
  const auto run = create();
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.err, turns::waiting);
  EXPECT_EQ(move.wait(), 0);
  EXPECT_EQ(scene::target(app), "/Volumes/X9/ExternalQuarn/Apps/Quarn.app") << "moved before it was copied";
  EXPECT_FALSE(scene::isLink(backupAt(idOf(run)) + "/InstalledApp.app"));
}

TEST(BackupCommands, besideAMoveHoldTheApplicationWhole) {
  setScene();
  const auto whole = fault::contents(app);
  const std::string move = "quarn move one " + app + " --yes --no-data";
  const std::string backup = "QUARN_SOURCE_ROOT=/gone quarn backup create --target-drive /Volumes/X9";
  for (const int gap : {0, 1, 5, 20, 60, 61}) {
    fs::remove_all(folder);
    const turns::Two two(gap % 2 == 0 ? move : backup, gap % 2 == 0 ? backup : move,
                         turns::milliseconds(gap));
    const auto made = fault::names(folder);
    ASSERT_EQ(made.size(), 1U) << two.all();
    const auto copied = fault::contents(backupAt(made[0]) + "/InstalledApp.app");
    EXPECT_EQ(copied.size(), whole.size()) << two.all();
    EXPECT_EQ(scene::quarn({"move", "back", app}).status, 0) << two.all();
    EXPECT_EQ(fault::contents(app), whole);
  }
}

}  // namespace
