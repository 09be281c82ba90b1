#include <gtest/gtest.h>

#include "tests/cli/Expected.h"

using namespace expected;
using scene::quarn;

namespace {

const std::string apps = "/Volumes/X9/ExternalQuarn/Apps";

/// What a repair says after its list of problems, without a snapshot.
std::string afterTheList(const scene::Run& run) {
  const auto end = run.out.rfind("\n\n\n");
  const auto begin = run.out.find("• [");
  return begin == std::string::npos ? run.out.substr(end + 3) : run.out.substr(begin);
}

scene::Run repair(std::vector<std::string> flags, const std::string& input = "") {
  std::vector<std::string> words = {"health", "repair", "--no-snapshot"};
  words.insert(words.end(), flags.begin(), flags.end());
  return quarn(words, {.input = input});
}

TEST(HealthRepair, theTwoChoicesForRevertedAppsExcludeEachOtherBeforeAnyScan) {
  scene::link("/Applications/Foo.app", "/nowhere");
  EXPECT_EQ(shown(quarn({"health", "repair", "--re-symlink-reverted", "--reclaim-reverted"})),
            failed("Choose at most one of --re-symlink-reverted, --reclaim-reverted."));
}

TEST(HealthRepair, aDeadLinkIsRemovedOnYes) {
  for (const char* answer : {"y\n", "Yes\n", "yup\n"}) {
    scene::link("/Applications/Foo.app", "/nowhere/Foo.app");
    const auto run = repair({}, answer);
    EXPECT_EQ(
        shown(run),
        printed("== DANGLING (1) ==\n"
                "  /Applications/Foo.app\n"
                "    → /nowhere/Foo.app\n"
                "    Target does not exist. The external drive may be unmounted, or the file was deleted.\n"
                "\n"
                "\n"
                "• [dangling] Foo.app — remove dead symlink\n"
                "    Target does not exist. The external drive may be unmounted, or the file was deleted.\n"
                "  Proceed? [y/N]   removed /Applications/Foo.app\n"));
    EXPECT_FALSE(scene::exists("/Applications/Foo.app"));
  }
}

TEST(HealthRepair, otherAnswersLeaveEverything) {
  scene::link("/Applications/Foo.app", "/nowhere/Foo.app");
  for (const char* answer : {"n\n", "\n", "", "no y\n", " y\n"}) {
    const auto run = repair({"--remove-dangling"}, answer);
    EXPECT_EQ(run.status, 0);
    EXPECT_TRUE(run.out.ends_with("  Proceed? [y/N] ")) << run.out;
    EXPECT_TRUE(scene::isLink("/Applications/Foo.app")) << answer;
  }
  const auto closed = quarn({"health", "repair", "--no-snapshot"}, {.input = std::nullopt});
  EXPECT_EQ(closed.status, 0);
  EXPECT_TRUE(scene::isLink("/Applications/Foo.app"));
}

TEST(HealthRepair, aDataLinkIntoTheFormerFolderIsRepointed) {
  const std::string link = scene::home + "/Library/Application Support/Foo";
  scene::write("/Volumes/X9/ExternalQuarn/Data/Foo/file", "kept");
  scene::link(link, "/Volumes/X9/Quarn/Data/Foo");
  const auto run = repair({"--yes"});
  EXPECT_EQ(
      afterTheList(run),
      "• [dangling] Foo — repoint to /Volumes/X9/ExternalQuarn/Data/Foo\n"
      "    App-data symlink target is missing. Relocated copy found at /Volumes/X9/ExternalQuarn/Data/Foo; "
      "`health repair` repoints it.\n"
      "  repointed " +
          link + " -> /Volumes/X9/ExternalQuarn/Data/Foo\n");
  EXPECT_EQ(scene::target(link), "/Volumes/X9/ExternalQuarn/Data/Foo");
  EXPECT_EQ(scene::read(link + "/file"), "kept");
}

TEST(HealthRepair, remnantsGoToTheTrashOfTheirDrive) {
  scene::write(apps + "/Empty.app/Contents/left", "left");
  scene::link("/Applications/Empty.app", apps + "/Empty.app");
  scene::write(apps + "/Corrupt.app/Contents/Info.plist", "<plist/>");
  scene::link("/Applications/Corrupt.app", apps + "/Corrupt.app");
  const auto run = repair({"--yes"});
  for (const char* name : {"Empty.app", "Corrupt.app"}) {
    EXPECT_NE(run.out.find("  trashed symlink + remnant for " + std::string(name) + "\n"), std::string::npos)
        << run.out;
    EXPECT_FALSE(scene::exists("/Applications/" + std::string(name)));
    EXPECT_FALSE(scene::exists(apps + "/" + name));
  }
  EXPECT_EQ(scene::read(scene::driveTrash() + "/Empty.app/Contents/left"), "left");
  EXPECT_EQ(scene::read(scene::driveTrash() + "/Corrupt.app/Contents/Info.plist"), "<plist/>");
}

TEST(HealthRepair, anOrphanGoesToTheTrashWithTheLaunchersThatLeadToIt) {
  scene::makeApp(apps + "/Foo.app");
  scene::makeLauncher(scene::home + "/Applications/Starter.app", apps + "/./Foo.app/");
  const auto run = repair({"--yes", "--remove-orphans"});
  EXPECT_NE(run.out.find("  trashed stale launcher shim " + scene::home +
                         "/Applications/Starter.app\n  trashed orphan " + apps + "/Foo.app\n"),
            std::string::npos)
      << run.out;
  EXPECT_TRUE(scene::exists(scene::driveTrash() + "/Foo.app/Contents/Info.plist"));
  EXPECT_TRUE(scene::exists(scene::home + "/.Trash/Starter.app"));
}

TEST(HealthRepair, aRevertedAppNeedsAChoiceEvenWithYes) {
  scene::makeApp("/Applications/Foo.app");
  scene::makeApp(apps + "/Foo.app");
  const auto before = scene::tree("/Volumes/X9");
  const auto run = repair({"--yes"});
  EXPECT_EQ(
      afterTheList(run),
      "• [reverted] Foo.app — needs --reclaim-reverted (delete SSD copy) or --re-symlink-reverted (re-move). "
      "Skipping.\n"
      "    An updater replaced the symlink with a real bundle on internal disk. SSD copy is now orphaned.\n");
  EXPECT_EQ(scene::tree("/Volumes/X9"), before);
}

TEST(HealthRepair, reclaimingTakesTheCopyOnTheDriveToTheTrash) {
  scene::makeApp("/Applications/Foo.app");
  scene::makeApp(apps + "/Foo.app", {.version = "0.9"});
  const auto inside = scene::tree("/Applications/Foo.app");
  const auto copy = scene::tree(apps + "/Foo.app");
  const auto run = repair({"--yes", "--reclaim-reverted"});
  EXPECT_NE(run.out.find("\n  reclaimed Foo.app\n"), std::string::npos) << run.out;
  EXPECT_EQ(scene::tree("/Applications/Foo.app"), inside);
  EXPECT_EQ(scene::tree(scene::driveTrash() + "/Foo.app"), copy);
}

TEST(HealthRepair, reSymlinkingMovesTheNewBundleAndTrashesTheOldCopy) {
  scene::makeApp("/Applications/Foo.app");
  scene::makeApp(apps + "/Foo.app", {.version = "0.9"});
  const auto fresh = scene::tree("/Applications/Foo.app");
  const auto stale = scene::tree(apps + "/Foo.app");
  const auto run = repair({"--yes", "--re-symlink-reverted"});
  EXPECT_NE(run.out.find("\n  re-symlinked Foo.app\n"), std::string::npos) << run.out;
  EXPECT_EQ(scene::target("/Applications/Foo.app"), apps + "/Foo.app");
  EXPECT_EQ(scene::tree(apps + "/Foo.app"), fresh);
  EXPECT_EQ(scene::tree(scene::driveTrash() + "/Foo.app"), stale);
}

TEST(HealthRepair, aPreferencesFileComesHome) {
  const std::string plist = scene::home + "/Library/Preferences/com.example.foo.plist";
  scene::write("/Volumes/X9/ExternalQuarn/Data/com.example.foo.plist", "content");
  scene::link(plist, "/Volumes/X9/ExternalQuarn/Data/com.example.foo.plist");
  const auto run = repair({"--yes"});
  EXPECT_EQ(afterTheList(run),
            "• [unsafePrefsPlist] com.example.foo.plist — restore plist to internal disk (cfprefsd-safe)\n"
            "    Library/Preferences plist is a symlink; cfprefsd will break it on next write.\n"
            "  restored " +
                plist + "\n");
  EXPECT_FALSE(scene::isLink(plist));
  EXPECT_EQ(scene::read(plist), "content");
}

TEST(HealthRepair, aPreferencesFileOfTheSystemIsExplainedIfItCantBeRestored) {
  scene::link("/Library/Preferences/com.example.plist", "/nowhere/com.example.plist");
  const auto run = repair({"--yes"});
  EXPECT_TRUE(
      run.out.ends_with("  FAILED: Source path no longer exists.\n"
                        "  Hint: /Library is root-owned. Run via gantrix wrapper:\n"
                        "    ~/.claude/skills/gantrix/gantrix \"$(which quarn)\" \\\n"
                        "        move restore \"/Library/Preferences/com.example.plist\"\n"))
      << run.out;
  EXPECT_TRUE(scene::isLink("/Library/Preferences/com.example.plist"));
}

TEST(HealthRepair, rowsOfMissingFilesAreForgotten) {
  scene::makeApp(apps + "/Foo.app");
  scene::link("/Applications/Foo.app", apps + "/Foo.app");
  scene::makeInstallsDB();
  scene::sql("INSERT INTO installs (install_id, app_name, bundle_id) VALUES ('i', 'Foo', 'com.example.foo')");
  scene::sql(
      "INSERT INTO tracked_files (install_id, file_path) VALUES ('i', '/gone'), ('i', '/also'), ('i', "
      "'/tmp')");
  const auto run = repair({"--yes"});
  EXPECT_TRUE(run.out.ends_with("  forgot 2 stale tracked file entries for Foo\n")) << run.out;
  EXPECT_EQ(scene::sql("SELECT file_path FROM tracked_files"), std::vector<std::string>{"/tmp"});
  scene::sql("INSERT INTO tracked_files (install_id, file_path) VALUES ('i', '/gone')");
  EXPECT_TRUE(repair({"--yes"}).out.ends_with("  forgot 1 stale tracked file entry for Foo\n"));
}

TEST(HealthRepair, aDryRunShowsEachAndChangesNothing) {
  scene::link("/Applications/Dead.app", "/nowhere");
  scene::makeApp(apps + "/Orphan.app");
  scene::makeApp("/Applications/Foo.app");
  scene::makeApp(apps + "/Foo.app");
  scene::replaceTool("/usr/bin/tmutil", "#!/bin/sh\ntouch /tmp/asked\n");
  const auto drive = scene::tree("/Volumes/X9"), applications = scene::tree("/Applications");
  const auto run = quarn({"health", "repair", "--dry-run", "--yes"});
  EXPECT_EQ(run.status, 0);
  EXPECT_NE(run.out.find("\n• [dangling] Dead.app — remove dead symlink\n"), std::string::npos) << run.out;
  EXPECT_NE(run.out.find("\n  (dry-run, skipping)\n• [reverted] Foo.app — needs "), std::string::npos)
      << run.out;
  EXPECT_NE(run.out.find("\n• [orphan] Orphan.app — trash from SSD to reclaim "), std::string::npos);
  EXPECT_TRUE(run.out.ends_with("\n  (dry-run, skipping)\n"));
  EXPECT_FALSE(scene::exists("/tmp/asked"));
  EXPECT_EQ(scene::tree("/Volumes/X9"), drive);
  EXPECT_EQ(scene::tree("/Applications"), applications);
}

TEST(HealthRepair, aSnapshotIsTakenFirstAndItsFailureIsNoReasonToStop) {
  scene::link("/Applications/Dead.app", "/nowhere");
  scene::replaceTool("/usr/bin/tmutil", "#!/bin/sh\nexit 1\n");
  const auto refused = quarn({"health", "repair"});
  EXPECT_NE(refused.out.find("\n\n\nsnapshot: skipped\n\n• [dangling]"), std::string::npos) << refused.out;
  scene::replaceTool("/usr/bin/tmutil",
                     "#!/bin/sh\ntest -h /Applications/Dead.app || exit 1\n"
                     "echo 'Created local snapshot with date: 2026-01-31-090500'\n");
  const auto taken = quarn({"health", "repair", "--yes"});
  EXPECT_NE(taken.out.find("\nsnapshot: com.apple.TimeMachine.2026-01-31-090500.local\n\n• "),
            std::string::npos)
      << taken.out;
}

TEST(HealthRepair, whatAnyoneWroteIntoTheManifestMovesNothingElse) {
  for (const char* source : {"/", "/Applications", "/Users/me", "/Volumes/X9"}) {
    for (const std::string& destination :
         {std::string("/Users/me/Documents"), std::string("/Volumes/X9"), apps}) {
      scene::write(scene::home + "/Documents/letter", "dear");
      scene::write(scene::manifest, R"([{"destinationPath":")" + destination +
                                        R"(","movedAt":"2026-01-31T09:05:00Z","sizeBytes":1,)" +
                                        R"("sourcePath":")" + std::string(source) + R"("}])");
      for (const char* flag : {"--reclaim-reverted", "--re-symlink-reverted"}) {
        const auto before = scene::tree("/Volumes/X9");
        const auto run = repair({"--yes", flag});
        EXPECT_NE(run.out.find("[reverted]"), std::string::npos) << run.out;
        EXPECT_EQ(scene::tree("/Volumes/X9"), before) << source << " " << destination;
        EXPECT_EQ(scene::read(scene::home + "/Documents/letter"), "dear");
      }
    }
  }
}

TEST(HealthRepair, aLinkToAHomeFolderTrashesNoHomeFolder) {
  scene::write("/Users/me/Documents/letter", "dear");
  scene::link("/Applications/Home.app", "/Users/me");
  const auto run = repair({"--yes"});
  EXPECT_NE(run.out.find("  WARN: could not trash /Users/me: “me” belongs where it is.\n"), std::string::npos)
      << run.out;
  EXPECT_EQ(scene::read("/Users/me/Documents/letter"), "dear");
}

}  // namespace
