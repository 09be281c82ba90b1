#include <filesystem>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>

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

TEST(HealthRepair, whatStaysKeepsTheLaunchersThatOpenIt) {
  scene::makeApp(apps + "/Foo.app");
  scene::makeApp("/Applications/Bar.app");
  scene::makeApp(apps + "/Bar.app");
  scene::makeLauncher(scene::home + "/Applications/Foo starter.app", apps + "/Foo.app");
  scene::makeLauncher(scene::home + "/Applications/Bar starter.app", apps + "/Bar.app");
  const auto launchers = scene::tree(scene::home + "/Applications");
  const auto copies = scene::tree(apps);
  ::chmod(apps.c_str(), 0555);
  const auto run = repair({"--yes", "--reclaim-reverted"});
  ::chmod(apps.c_str(), 0755);
  for (const std::string name : {"Foo.app", "Bar.app"}) {
    EXPECT_NE(run.out.find("  WARN: could not trash " + apps + "/" + name + ": "), std::string::npos)
        << run.out;
  }
  EXPECT_EQ(run.out.find("launcher"), std::string::npos) << run.out;
  EXPECT_EQ(scene::tree(scene::home + "/Applications"), launchers);
  EXPECT_EQ(scene::tree(apps), copies);
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

/// Everything that a repair could reach.
std::vector<std::string> wholeTree() {
  std::vector<std::string> all;
  for (const std::string top : {"/Applications", "/Users", "/Volumes", "/etc/zz"}) {
    for (const std::string& line : scene::tree(top)) all.push_back(top + " " + line);
  }
  return all;
}

void writeManifest(const std::string& source, const std::string& destination) {
  scene::write(scene::manifest, R"([{"destinationPath":")" + destination +
                                    R"(","movedAt":"2026-01-31T09:05:00Z","sizeBytes":1,"sourcePath":")" +
                                    source + R"("}])");
}

TEST(HealthRepair, whatAnyoneWroteIntoTheManifestReachesNothing) {
  scene::makeApp("/Applications/Foo.app");
  scene::makeApp(apps + "/Seed.app");
  scene::link("/Applications/Seed.app", apps + "/Seed.app");
  scene::makeApp("/Volumes/X9/Photos/Foo.app");
  scene::makeApp("/Users/me/Projects/Quarn/src/Foo.app");
  scene::makeApp("/Volumes/X9/QuarnBackups/Foo.app");
  scene::makeApp("/Users/me/Documents/Foo.app");
  scene::link(apps + "/lnk", "/Users/me/Documents");
  scene::link("/Volumes/X9/ExternalQuarn/vol", "/Volumes/X9");
  scene::write("/Volumes/X9/ExternalQuarn/Data/Other/file", "of another item");
  scene::write("/etc/zz/file", "of the system");
  scene::write("/Users/me/Projects/x/file", "a project");
  const std::pair<std::string, std::string> records[] = {
      {"/", "/Volumes/X9"},
      {"/Applications", apps},
      {scene::home, apps + "/me"},
      {"/Volumes/X9", apps + "/X9"},
      {"/Applications/Foo.app", "/Users/me/Documents/Foo.app"},
      {"/Applications/Foo.app", "/Volumes/X9/Photos/Foo.app"},
      {"/Applications/Foo.app", "/Users/me/Projects/Quarn/src/Foo.app"},
      {"/Applications/Foo.app", "/Volumes/X9/QuarnBackups/Foo.app"},
      {"/Applications/Foo.app", apps + "/lnk/Foo.app"},
      {"/Applications/Foo.app", "/Volumes/X9/ExternalQuarn/vol/Photos/Foo.app"},
      {"/Applications/Foo.app", apps + "/../../Photos/Foo.app"},
      {"/Applications/Foo.app", "ExternalQuarn/Apps/Seed.app"},
      {"/Applications/Foo.app", "/Volumes/None/ExternalQuarn/Apps/Foo.app"},
      {"/Applications/Foo.app", apps + "/Seed.app"},
      {"/Applications/Foo.app", "/Volumes/X9/ExternalQuarn/Data/Other"},
      {"/Applications/Foo.app/Contents/../../Foo.app", apps + "/Seed.app"},
      {"/etc/zz", apps + "/zz"},
      {"/Users/me/Projects/x", apps + "/x"},
      {"/Volumes/X9/Photos", apps + "/Photos"},
      {scene::home + "/Library/Application Support/Quarn", apps + "/Quarn"},
  };
  for (const auto& [source, destination] : records) {
    writeManifest(source, destination);
    const auto before = wholeTree();
    for (const char* flag : {"--reclaim-reverted", "--re-symlink-reverted"}) {
      const auto run = quarn({"health", "repair", "--no-snapshot", "--yes", flag}, {.folder = "/Volumes/X9"});
      EXPECT_NE(run.out.find("[reverted]"), std::string::npos) << source << " " << destination << run.out;
      EXPECT_EQ(wholeTree(), before) << source << " " << destination << "\n" << run.out;
      EXPECT_NE(
          run.out.find(std::string(flag) == "--reclaim-reverted" ? "  WARN: could not trash " : "  FAIL: "),
          std::string::npos)
          << run.out;
    }
  }
}

TEST(HealthRepair, aRecordOfAFolderThatIsBackMovesItAgainThoughItsFolderOnTheDriveIsGone) {
  scene::makeApp("/Applications/Foo.app");
  writeManifest("/Applications/Foo.app", apps + "/Foo.app");
  const auto whole = scene::tree("/Applications/Foo.app");
  const auto run = repair({"--yes", "--re-symlink-reverted"});
  EXPECT_NE(run.out.find("  WARN: could not trash " + apps + "/Foo.app: "), std::string::npos) << run.out;
  EXPECT_TRUE(run.out.ends_with("  re-symlinked Foo.app\n")) << run.out;
  EXPECT_EQ(scene::tree(apps + "/Foo.app"), whole);
}

TEST(HealthRepair, aFolderOfApplicationsThatIsBackGetsItsLaunchersAgain) {
  scene::makeApp("/Applications/Suite/One.app");
  writeManifest("/Applications/Suite", apps + "/Suite");
  const auto run = repair({"--yes", "--re-symlink-reverted"});
  EXPECT_NE(run.out.find("\n  re-symlinked Suite\n"), std::string::npos) << run.out;
  EXPECT_EQ(scene::target("/Applications/Suite"), apps + "/Suite");
  EXPECT_EQ(scene::read("/Applications/One.app/Contents/Resources/ExternalAppTarget.txt"),
            apps + "/Suite/One.app");
  EXPECT_EQ(quarn({"health", "check"}).status, 0);
}

TEST(HealthRepair, reclaimingWhatIsGoneSaysItsClosingLine) {
  scene::makeApp("/Applications/Foo.app");
  writeManifest("/Applications/Foo.app", apps + "/Foo.app");
  const auto before = scene::tree("/Applications/Foo.app");
  EXPECT_TRUE(repair({"--yes", "--reclaim-reverted"}).out.ends_with("\n  reclaimed Foo.app\n"));
  EXPECT_EQ(scene::tree("/Applications/Foo.app"), before);
}

TEST(HealthRepair, aLauncherWhoseApplicationIsGoneIsNoReasonToTrashTheCopy) {
  scene::makeLauncher("/Applications/Foo.app", "/Volumes/Away/ExternalQuarn/Apps/Foo.app");
  scene::makeApp(apps + "/Foo.app");
  const auto before = scene::tree("/Volumes/X9");
  for (const char* flag : {"--reclaim-reverted", "--re-symlink-reverted"}) {
    const auto run = repair({"--yes", flag});
    EXPECT_NE(run.out.find("“Foo.app” is a launcher, and its application is gone."), std::string::npos)
        << run.out;
    EXPECT_EQ(scene::tree("/Volumes/X9"), before);
  }
}

TEST(HealthRepair, anApplicationThatRunsKeepsItsOldCopyToo) {
  const std::string program = "/Applications/Foo.app/Contents/MacOS/Foo";
  scene::makeApp("/Applications/Foo.app");
  std::filesystem::copy_file("/bin/sleep", program, std::filesystem::copy_options::overwrite_existing);
  scene::makeApp(apps + "/Foo.app");
  const auto before = scene::tree("/Volumes/X9");
  scene::Background running({"/bin/sh", "-c", "touch /tmp/ready; exec " + program + " 60"});
  ASSERT_TRUE(scene::appears("/tmp/ready"));
  const auto run = repair({"--yes", "--re-symlink-reverted"});
  EXPECT_NE(run.out.find("  FAIL: App is running: Foo.app."), std::string::npos) << run.out;
  EXPECT_EQ(scene::tree("/Volumes/X9"), before);
}

TEST(HealthRepair, anItemWithAVolumeInsideStays) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  scene::makeApp(apps + "/Foo.app");
  scene::plug("Inner", "1m");
  scene::write("/Volumes/Inner/file", "of another volume");
  scene::makeFolder(apps + "/Foo.app/mnt");
  ASSERT_EQ(::mount("/Volumes/Inner", (apps + "/Foo.app/mnt").c_str(), nullptr, MS_BIND, nullptr), 0);
  const auto run = repair({"--yes"});
  EXPECT_NE(run.out.find("  WARN: could not trash " + apps + "/Foo.app: A volume is mounted inside "),
            std::string::npos)
      << run.out;
  EXPECT_EQ(scene::read(apps + "/Foo.app/mnt/file"), "of another volume");
}

TEST(HealthRepair, aLinkToAHomeFolderOrToRecordsTrashesNone) {
  scene::write("/Users/me/Documents/letter", "dear");
  scene::write("/Volumes/X9/QuarnBackups/b1/file", "backup");
  scene::write(scene::manifest, "[\n\n]");
  scene::link("/Applications/Home.app", "/Users/me");
  scene::link("/Applications/Manifest.app", scene::manifest);
  scene::link("/Applications/Backup.app", "/Volumes/X9/QuarnBackups/b1");
  const auto run = repair({"--yes"});
  EXPECT_NE(run.out.find("  WARN: could not trash /Users/me: “me” belongs where it is.\n"), std::string::npos)
      << run.out;
  EXPECT_EQ(scene::read("/Users/me/Documents/letter"), "dear");
  EXPECT_EQ(scene::read("/Volumes/X9/QuarnBackups/b1/file"), "backup");
  EXPECT_EQ(scene::read(scene::manifest), "[\n\n]");
}

TEST(HealthRepair, aPreferencesLinkCarriesOffNothingElse) {
  const std::string link = scene::home + "/Library/Preferences/com.example.plist";
  scene::write(scene::manifest, "[\n\n]");
  scene::write("/Users/me/folder.plist/inside", "inside");
  scene::write("/Users/me/.ssh/id", "key");
  scene::write("/Users/me/other/rel.plist", "of the current folder");
  scene::write("/Volumes/X9/QuarnBackups/b.plist", "backup");
  for (const std::string& target :
       {scene::manifest, std::string("/Users/me/folder.plist"), std::string("/Users/me/.ssh/id"),
        std::string("/Volumes/X9/QuarnBackups/b.plist"), std::string("rel.plist")}) {
    scene::shell("rm -f " + link);
    scene::link(link, target);
    const auto before = wholeTree();
    const auto run = quarn({"health", "repair", "--no-snapshot", "--yes"}, {.folder = "/Users/me/other"});
    EXPECT_TRUE(run.out.ends_with("  FAILED: “com.example.plist” doesn’t lead to a preferences file.\n"))
        << target << run.out;
    EXPECT_EQ(wholeTree(), before) << target;
  }
}

TEST(HealthRepair, goesThroughTheKindsInItsOwnOrder) {
  scene::link(scene::home + "/Library/Preferences/p.plist", "/nowhere/p.plist");
  scene::makeApp(apps + "/Suite/One.app");
  scene::link("/Applications/Suite", apps + "/Suite");
  scene::makeApp(apps + "/Orphan.app");
  scene::makeApp("/Applications/Back.app");
  scene::makeApp(apps + "/Back.app");
  scene::write(apps + "/Corrupt.app/Contents/Info.plist", "<plist/>");
  scene::link("/Applications/Corrupt.app", apps + "/Corrupt.app");
  scene::link("/Applications/Dead.app", "/nowhere");
  scene::makeApp(apps + "/Tracked.app", {.identifier = "com.example.tracked"});
  scene::link("/Applications/Tracked.app", apps + "/Tracked.app");
  scene::makeInstallsDB();
  scene::sql(
      "INSERT INTO installs (install_id, app_name, bundle_id) VALUES ('t', 'Tracked', "
      "'com.example.tracked')");
  scene::sql("INSERT INTO tracked_files (install_id, file_path) VALUES ('t', '/gone')");
  const auto run = repair({"--dry-run"});
  std::string kinds;
  for (auto at = run.out.find("• ["); at != std::string::npos; at = run.out.find("• [", at + 1))
    kinds += run.out.substr(at + 5, run.out.find(']', at) - at - 5) + " ";
  EXPECT_EQ(
      kinds,
      "dangling corrupted reverted orphan missingTrackedFiles missingSpotlightLaunchers unsafePrefsPlist ");
}

TEST(HealthRepair, takesNothingFromTheDriveIfTheFolderForApplicationsMayNotBeListed) {
  scene::makeApp(apps + "/Foo.app");
  scene::link("/Applications/Foo.app", apps + "/Foo.app");
  const auto before = scene::tree("/Volumes/X9");
  for (const mode_t mode : {0311U, 0444U}) {
    ::chmod("/Applications", mode);
    const auto run = repair({"--yes", "--reclaim-reverted"});
    ::chmod("/Applications", 0755);
    EXPECT_EQ(shown(run), printed("Everything healthy. Nothing to repair.\n"));
    EXPECT_EQ(scene::tree("/Volumes/X9"), before);
    EXPECT_EQ(scene::target("/Applications/Foo.app"), apps + "/Foo.app");
  }
}

TEST(HealthRepair, anOrphanToWhichALinkOfAnotherNameLeadsStays) {
  scene::makeApp(apps + "/Foo.app");
  scene::makeApp(apps + "/Bar.app");
  scene::link("/Volumes/X9/way", apps);
  scene::link("/Applications/By way.app", "/Volumes/X9/way/Foo.app");
  scene::link("/Applications/bar", apps + "/Bar.app/Contents/MacOS/Foo");
  const auto before = scene::tree("/Volumes/X9");
  const auto run = repair({"--yes"});
  for (const std::string name : {"Foo.app", "Bar.app"}) {
    EXPECT_NE(run.out.find("  left as it is: “" + apps + "/" + name + "” is in use: a link leads there.\n"),
              std::string::npos)
        << run.out;
  }
  EXPECT_EQ(scene::tree("/Volumes/X9"), before);
}

TEST(HealthRepair, linksThatLeadInACircleAreDead) {
  scene::link("/Applications/Foo.app", "/Applications/Foo.app");
  scene::link("/Applications/Bar.app", "/Applications/Foo.app/Bar.app");
  const auto run = repair({"--yes"});
  EXPECT_EQ(run.status, 0);
  EXPECT_FALSE(scene::isLink("/Applications/Foo.app")) << run.out;
  EXPECT_FALSE(scene::isLink("/Applications/Bar.app")) << run.out;
}

TEST(HealthRepair, aBundleWithALinkToWhatMayNotBeLookedAtStays) {
  const std::string copy = apps + "/Foo.app", closed = "/Volumes/X9/closed";
  for (const std::string inner : {"Contents/MacOS", "Contents/Info.plist"}) {
    std::filesystem::remove_all(copy);
    scene::makeApp(copy);
    std::filesystem::remove_all(closed);
    scene::makeFolder(closed);
    std::filesystem::rename(copy + "/" + inner, closed + "/inner");
    scene::link(copy + "/" + inner, closed + "/inner");
    std::filesystem::remove("/Applications/Foo.app");
    scene::link("/Applications/Foo.app", copy);
    const auto before = scene::tree(copy);
    ::chmod(closed.c_str(), 0);
    const auto run = repair({"--yes"});
    ::chmod(closed.c_str(), 0755);
    EXPECT_NE(run.out.find("  left as it is: "), std::string::npos) << run.out;
    EXPECT_EQ(scene::tree(copy), before);
    EXPECT_EQ(scene::target("/Applications/Foo.app"), copy);
  }
}

TEST(HealthRepair, aLinkToWhatMayNotBeLookedAtStaysAndSoDoesThat) {
  const std::string copy = apps + "/Foo.app";
  scene::link("/Applications/Foo.app", copy);
  struct {
    std::string closed, kind, why;
  } const cases[] = {
      {copy + "/Contents/MacOS", "corrupted",
       "The file “MacOS” couldn’t be opened because you don’t have permission to view it."},
      {copy + "/Contents", "empty",
       "“Info.plist” can’t be looked at: The file “Info.plist” couldn’t be opened because you don’t have "
       "permission to "
       "view it."},
      {apps, "dangling",
       "“Foo.app” can’t be looked at: The file “Foo.app” couldn’t be opened because you don’t have "
       "permission to "
       "view it."},
  };
  for (const auto& each : cases) {
    std::filesystem::remove_all(copy);
    scene::makeApp(copy);
    const auto before = scene::tree(copy);
    ::chmod(each.closed.c_str(), 0);
    const auto run = repair({"--yes"});
    ::chmod(each.closed.c_str(), 0755);
    EXPECT_NE(run.out.find("[" + each.kind + "] Foo.app"), std::string::npos) << run.out;
    EXPECT_TRUE(run.out.ends_with("  left as it is: " + each.why + "\n")) << run.out;
    EXPECT_EQ(scene::target("/Applications/Foo.app"), copy);
    EXPECT_EQ(scene::tree(copy), before);
  }
}

}  // namespace
