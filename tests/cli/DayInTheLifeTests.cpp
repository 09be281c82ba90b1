#include <gtest/gtest.h>

#include "tests/cli/DriveScenes.h"
#include "tests/cli/ReportForms.h"

/// What a drive, updaters and a person do to applications that were moved, one thing after the other. After
/// each, the check says just that, a dry run changes nothing, and the repair mends it.

using reports::expectReport;
using reports::Finding;
using reports::Report;

namespace {

namespace fs = std::filesystem;

const std::string apps = "/Volumes/X9/ExternalQuarn/Apps";
const std::string support = scene::home + "/Library/Application Support/Foo";
const std::string movedSupport = "/Volumes/X9/ExternalQuarn/Data/Library/Application Support/Foo";
const std::string preferences = scene::home + "/Library/Preferences/com.example.foo.plist";

std::string movedTo(const std::string& name) {
  return apps + "/" + name;
}

std::vector<std::string> wholeTree() {
  std::vector<std::string> all;
  for (const std::string top : {"/Applications", "/Users", "/Volumes"}) {
    for (const std::string& line : scene::tree(top)) all.push_back(top + " " + line);
  }
  return all;
}

void expectThatADryRunChangesNothing() {
  const auto before = wholeTree();
  for (const char* flag : {"--re-symlink-reverted", "--reclaim-reverted"}) {
    EXPECT_EQ(scene::quarn({"health", "repair", "--dry-run", "--yes", flag}).status, 0);
    EXPECT_EQ(wholeTree(), before);
  }
}

/// Answers every question, and expects these lines among what is said.
void repair(const std::string& answers, const std::vector<std::string>& lines,
            const std::string& flag = "--no-snapshot") {
  const auto run = scene::quarn({"health", "repair", "--no-snapshot", flag}, {.input = answers});
  EXPECT_EQ(run.status, 0);
  for (const std::string& line : lines)
    EXPECT_NE(run.out.find(line + "\n"), std::string::npos) << line << "\n" << run.out;
}

Finding healthy(const std::string& name) {
  return {"healthy", "/Applications/" + name, movedTo(name), expected::allocated(movedTo(name)), ""};
}

Report withFindings(const std::vector<std::string>& healthyNames, const std::vector<Finding>& others,
                    int moreLinks = 0) {
  Report report{static_cast<int>(healthyNames.size()) + moreLinks, {apps}, others};
  for (const std::string& name : healthyNames) report.findings.push_back(healthy(name));
  return report;
}

void move(const std::string& name) {
  const auto run = scene::quarn({"move", "one", "/Applications/" + name, "--yes"});
  ASSERT_NE(run.out.find("    ok in "), std::string::npos) << run.out << run.err;
}

class DayInTheLife : public testing::Test {
 protected:
  void SetUp() override {
    if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
    scene::makeApp("/Applications/Foo.app");
    scene::writeBytes(support + "/state", 3000);
    scene::makeApp("/Applications/Bar.app", {.identifier = "com.example.bar"});
    scene::makeApp("/Applications/Baz.app", {.identifier = "com.example.baz"});
    for (const char* name : {"Foo.app", "Bar.app", "Baz.app"}) move(name);
    expectReport(withFindings({"Foo.app", "Bar.app", "Baz.app"}, {}));
  }
};

TEST_F(DayInTheLife, aFolderOfApplicationsGetsItsLaunchers) {
  scene::makeApp("/Applications/Suite/One.app", {.identifier = "com.example.one", .executable = "One"});
  scene::makeApp("/Applications/Suite/Two.app", {.identifier = "com.example.two", .executable = "Two"});
  scene::quarn(
      {"move", "path", "--source", "/Applications/Suite", "--destination", movedTo("Suite"), "--yes"});
  const auto check = scene::quarn({"health", "check"});
  EXPECT_EQ(check.status, 2);
  EXPECT_NE(check.out.find("== MISSINGSPOTLIGHTLAUNCHERS (1) ==\n  /Applications/Suite\n    → " +
                           movedTo("Suite") + "\n    Nested apps need top-level launchers for Spotlight: "),
            std::string::npos)
      << check.out;
  expectThatADryRunChangesNothing();
  repair("n\n", {});
  EXPECT_FALSE(scene::exists("/Applications/One.app"));
  repair("y\n", {"  Proceed? [y/N]   installed/repaired 2 Spotlight launchers"});
  EXPECT_EQ(scene::run({"/Applications/One.app/Contents/MacOS/ExternalAppLauncher"}).out,
            scene::run({movedTo("Suite/One.app/Contents/MacOS/One")}).out)
      << "the launcher opens the application on the drive";
  expectReport(withFindings({"Foo.app", "Bar.app", "Baz.app"}, {}));
}

TEST_F(DayInTheLife, anUpdaterReplacesALink) {
  fs::remove("/Applications/Foo.app");
  scene::makeApp("/Applications/Foo.app", {.version = "2.0"});
  const auto fresh = scene::tree("/Applications/Foo.app"), old = scene::tree(movedTo("Foo.app"));
  expectReport(withFindings(
      {"Bar.app", "Baz.app"},
      {{"reverted", "/Applications/Foo.app", movedTo("Foo.app"), expected::allocated(movedTo("Foo.app")),
        "An updater replaced the symlink with a real bundle on internal disk. SSD copy is now "
        "orphaned."}}));
  expectThatADryRunChangesNothing();
  repair("y\n", {"• [reverted] Foo.app — needs --reclaim-reverted (delete SSD copy) or --re-symlink-reverted "
                 "(re-move). Skipping."});
  EXPECT_EQ(scene::tree("/Applications/Foo.app"), fresh);
  repair("y\n", {"  Proceed? [y/N]   re-symlinked Foo.app"}, "--re-symlink-reverted");
  EXPECT_EQ(scene::tree(movedTo("Foo.app")), fresh);
  EXPECT_EQ(scene::tree(scene::driveTrash() + "/Foo.app"), old);
  expectReport(withFindings({"Foo.app", "Bar.app", "Baz.app"}, {}));
}

TEST_F(DayInTheLife, aCopyIsEmptied) {
  fs::remove_all(movedTo("Bar.app/Contents/Info.plist"));
  const auto rest = scene::tree(movedTo("Bar.app"));
  expectReport(withFindings(
      {"Foo.app", "Baz.app"},
      {{"empty", "/Applications/Bar.app", movedTo("Bar.app"), expected::allocated(movedTo("Bar.app")),
        "Bundle directory exists but has no Contents/Info.plist. App is unlaunchable."}},
      1));
  expectThatADryRunChangesNothing();
  repair("y\n", {"  Proceed? [y/N]   trashed symlink + remnant for Bar.app"});
  EXPECT_EQ(scene::tree(scene::driveTrash() + "/Bar.app"), rest);
  expectReport(withFindings({"Foo.app", "Baz.app"}, {}));
}

TEST_F(DayInTheLife, aLinkIsDeletedAndTheCopyComesBackFromTheTrash) {
  fs::remove("/Applications/Baz.app");
  const auto copy = scene::tree(movedTo("Baz.app"));
  const auto bytes = expected::allocated(movedTo("Baz.app"));
  expectReport(withFindings({"Foo.app", "Bar.app"}, {{"orphan", movedTo("Baz.app"), std::nullopt, bytes,
                                                      "Bundle on SSD with no inbound symlink. Wasting " +
                                                          expected::size(bytes) + "."}}));
  expectThatADryRunChangesNothing();
  repair("", {});
  EXPECT_EQ(scene::tree(movedTo("Baz.app")), copy);
  repair("Y\n", {"  Proceed? [y/N]   trashed orphan " + movedTo("Baz.app")});
  expectReport(withFindings({"Foo.app", "Bar.app"}, {}));
  fs::rename(scene::driveTrash() + "/Baz.app", movedTo("Baz.app"));
  scene::link("/Applications/Baz.app", movedTo("Baz.app"));
  EXPECT_EQ(scene::tree(movedTo("Baz.app")), copy);
  expectReport(withFindings({"Foo.app", "Bar.app", "Baz.app"}, {}));
}

TEST_F(DayInTheLife, aPreferencesFileBecomesALink) {
  scene::write("/Volumes/X9/ExternalQuarn/Data/com.example.foo.plist", "preferences");
  scene::link(preferences, "/Volumes/X9/ExternalQuarn/Data/com.example.foo.plist");
  expectReport(
      withFindings({"Foo.app", "Bar.app", "Baz.app"},
                   {{"unsafePrefsPlist", preferences, "/Volumes/X9/ExternalQuarn/Data/com.example.foo.plist",
                     0, "Library/Preferences plist is a symlink; cfprefsd will break it on next write."}}));
  expectThatADryRunChangesNothing();
  repair("yes\n", {"  Proceed? [y/N]   restored " + preferences});
  EXPECT_EQ(scene::read(preferences), "preferences");
  EXPECT_FALSE(scene::isLink(preferences));
  expectReport(withFindings({"Foo.app", "Bar.app", "Baz.app"}, {}));
}

TEST_F(DayInTheLife, aDataLinkStillLeadsIntoTheFormerFolder) {
  const std::string former = "/Volumes/X9/Quarn/Data/Library/Application Support/Foo";
  fs::remove(support);
  scene::link(support, former);
  expectReport(withFindings({"Foo.app", "Bar.app", "Baz.app"},
                            {{"dangling", support, former, 0,
                              "App-data symlink target is missing. Relocated copy found at " + movedSupport +
                                  "; `health repair` repoints it."}}));
  expectThatADryRunChangesNothing();
  repair("y\n", {"  Proceed? [y/N]   repointed " + support + " -> " + movedSupport});
  EXPECT_EQ(scene::target(support), movedSupport);
  expectReport(withFindings({"Foo.app", "Bar.app", "Baz.app"}, {}));
}

Finding unplugged(const std::string& name) {
  return {"dangling", "/Applications/" + name, movedTo(name), 0,
          "Target does not exist. The external drive may be unmounted, or the file was deleted."};
}

Finding withoutData() {
  return {"dangling", support, movedSupport, 0,
          "App-data symlink target is missing. No relocated copy found; the app may crash at launch until "
          "re-linked."};
}

TEST_F(DayInTheLife, theDriveIsUnpluggedAndComesBack) {
  PocketDrive drive;
  PocketDrive::pull(false);
  expectReport({3, {}, {unplugged("Foo.app"), unplugged("Bar.app"), unplugged("Baz.app"), withoutData()}});
  expectThatADryRunChangesNothing();
  PocketDrive::plug();
  expectReport(withFindings({"Foo.app", "Bar.app", "Baz.app"}, {}));

  const std::string other = "/Volumes/X9 1/ExternalQuarn/Apps";
  PocketDrive::pull(true);
  PocketDrive::plugAt("/Volumes/X9 1");
  std::vector<Finding> found = {withoutData()};
  for (const std::string name : {"Foo.app", "Bar.app", "Baz.app"}) {
    const auto bytes = expected::allocated(other + "/" + name);
    found.push_back(unplugged(name));
    found.push_back({"orphan", other + "/" + name, std::nullopt, bytes,
                     "Bundle on SSD with no inbound symlink. Wasting " + expected::size(bytes) + "."});
  }
  expectReport({3, {other}, found});
  expectThatADryRunChangesNothing();
  scene::unplug("X9 1");
  PocketDrive::plug();
  expectReport(withFindings({"Foo.app", "Bar.app", "Baz.app"}, {}));
}

TEST_F(DayInTheLife, aRepairThatIsAnsweredWhileTheDriveHasAnotherNameCanBeUndone) {
  PocketDrive drive;
  PocketDrive::pull(true);
  PocketDrive::plugAt("/Volumes/X9 1");
  const std::string other = "/Volumes/X9 1/ExternalQuarn/Apps/Foo.app";
  const auto copy = scene::tree(other);
  const auto run = scene::quarn({"health", "repair", "--no-snapshot", "--yes"});
  EXPECT_NE(run.out.find("  removed /Applications/Foo.app\n"), std::string::npos) << run.out;
  EXPECT_NE(run.out.find("  trashed orphan " + other + "\n"), std::string::npos) << run.out;
  EXPECT_EQ(scene::tree(scene::driveTrash("/Volumes/X9 1") + "/Foo.app"), copy) << "in one run";
  scene::unplug("X9 1");
  PocketDrive::plug();
  for (const char* name : {"Foo.app", "Bar.app", "Baz.app"}) {
    fs::rename(scene::driveTrash() + "/" + name, movedTo(name));
    scene::link("/Applications/" + std::string(name), movedTo(name));
  }
  scene::link(support, movedSupport);
  expectReport(withFindings({"Foo.app", "Bar.app", "Baz.app"}, {}));
}

}  // namespace
