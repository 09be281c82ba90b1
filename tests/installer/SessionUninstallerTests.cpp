#include <gtest/gtest.h>

#include "QuarnCore/installer/ChangedPathGuard.h"
#include "QuarnCore/installer/UninstallPlanner.h"
#include "tests/installer/Installing.h"
#include "tests/support/FakeTools.h"
#include "tests/support/Unresolving.h"

namespace quarn {
namespace {

using namespace installing;
using Texts = std::vector<std::string>;

InstallerSession sessionOf(const Texts& changedPaths, const Texts& receipts = {}) {
  InstallerSession session;
  session.id = "x";
  session.optionID = "trusted-external";
  session.targetDrivePath = "/Volumes/X9";
  session.changedPaths = changedPaths;
  session.newReceipts = receipts;
  return session;
}

void uninstall(const InstallerSession& session) {
  SessionUninstaller::carryOut(hostPlatform(), session);
}

bool allows(const std::string& path, const InstallerSession& session = sessionOf({})) {
  return ChangedPathGuard(hostPlatform(), session).allows(Path(path));
}

TEST(Uninstalling, leavesBackupsOnAVolumeThatIsMountedAnywhere) {
  if (!scene::hasMounts()) GTEST_SKIP() << "This room has no mounts.";
  scene::makeFolder("/Users/me/Mnt");
  ASSERT_EQ(std::system("mount -t tmpfs none /Users/me/Mnt"), 0);
  scene::makeLauncher("/Users/me/Mnt/QuarnBackups/1/L.app", "/x");
  scene::makeLauncher("/Users/me/Mnt/L.app", "/x");
  EXPECT_FALSE(allows("/Users/me/Mnt/QuarnBackups/1/L.app"));
  EXPECT_TRUE(allows("/Users/me/Mnt/L.app"));
}

TEST(UninstallPlan, takesContentsBeforeTheirFolderAndThenTheReceipts) {
  EXPECT_EQ(UninstallPlanner::plan(sessionOf({"/b", "/a/x", "/a", "/a/x/y"}, {"com.b", "com.a"})),
            (Texts{"trash\t/b", "trash\t/a/x/y", "trash\t/a/x", "trash\t/a", "forget-receipt\tcom.b",
                   "forget-receipt\tcom.a"}));
  EXPECT_EQ(UninstallPlanner::plan(sessionOf({})), Texts{});
}

TEST(Uninstalling, movesWhatWasInstalledToTheTrash) {
  scene::makeApp("/Applications/Foo.app");
  scene::makeApp(apps + "/Foo.app");
  scene::write("/Library/LaunchAgents/com.example.foo.plist", "x");
  scene::write("/Users/me/Library/Application Support/Foo/settings", "x");
  scene::makeApp("/Applications/Other.app");
  const auto other = scene::tree("/Applications/Other.app");
  uninstall(
      sessionOf({"/Applications/Foo.app", apps + "/Foo.app", "/Library/LaunchAgents/com.example.foo.plist",
                 "/Users/me/Library/Application Support/Foo",
                 "/Users/me/Library/Application Support/Foo/settings", "/Applications/None.app"}));
  EXPECT_EQ(namesIn("/Users/me/.Trash"), (Texts{"Foo", "Foo.app", "com.example.foo.plist", "settings"}));
  EXPECT_EQ(namesIn(scene::driveTrash()), Texts{"Foo.app"});
  EXPECT_EQ(namesIn("/Applications"), (Texts{"Other.app", "Utilities"}));
  EXPECT_EQ(scene::tree("/Applications/Other.app"), other);
}

TEST(Uninstalling, leavesAFolderInWhichThereIsMoreThanTheSessionNames) {
  // A package puts a file into the folder of a vendor whose other product was there before.
  const std::string vendor = "/Library/Application Support/Vendor";
  scene::write(vendor + "/licence of another product", "precious");
  scene::write(vendor + "/mine/a", "x");
  scene::write(vendor + "/mine/.DS_Store", "x");
  scene::write(vendor + "/Tool.bundle/Contents/Info.plist", "x");
  uninstall(sessionOf({vendor, vendor + "/mine", vendor + "/mine/a", vendor + "/Tool.bundle"}));
  EXPECT_EQ(namesIn(vendor), Texts{"licence of another product"});
  EXPECT_EQ(namesIn("/Users/me/.Trash"), (Texts{"Tool.bundle", "a", "mine"}));
}

TEST(Uninstalling, takesTheApplicationsOfTheSessionAsAWhole) {
  const std::string copy = apps + "/Foo.app";
  scene::makeApp(copy);
  const auto whole = scene::tree(copy);
  scene::makeLauncher("/Applications/Foo.app", copy);
  InstallerSession session =
      sessionOf({"/Applications/Foo.app", "/Applications/Foo.app/Contents/Info.plist", copy,
                 copy + "/Contents", copy + "/Contents/Info.plist", "/Library/LaunchAgents/x.plist"});
  session.actions = {"installed-pkg\t/a.pkg", "installed-app\t/Applications/Foo.app\t" + copy};
  uninstall(session);
  EXPECT_EQ(namesIn("/Users/me/.Trash"), Texts{"Foo.app"});
  EXPECT_EQ(namesIn(scene::driveTrash()), Texts{"Foo.app"});
  EXPECT_EQ(scene::tree(scene::driveTrash() + "/Foo.app"), whole);
}

TEST(Uninstalling, aFolderForApplicationsThatLeadsOffTheDriveIsNoneOfIt) {
  scene::write("/Users/me/Documents/thesis", "precious");
  scene::makeFolder("/Volumes/X9/ExternalQuarn");
  scene::link(apps, "/Users/me/Documents");
  EXPECT_FALSE(allows("/Users/me/Documents/thesis"));
  EXPECT_FALSE(allows(apps + "/thesis"));
}

TEST(Uninstalling, theCopyInAFolderOnADriveIsKnown) {
  scene::makeApp("/Volumes/X9/Stuff/ExternalQuarn/Apps/Foo.app");
  InstallerSession session = sessionOf({});
  session.targetDrivePath = "/Volumes/X9/Stuff";
  EXPECT_TRUE(allows("/Volumes/X9/Stuff/ExternalQuarn/Apps/Foo.app", session));
}

TEST(Uninstalling, forgetsEachReceipt) {
  doubles::FakeTools tools;
  tools.answers["/usr/sbin/pkgutil"] = {.status = 1, .error = "No receipt"};
  SessionUninstaller::carryOut(tools.platform(), sessionOf({}, {"com.a", "", "--volume", "-x", "com.b c"}));
  EXPECT_EQ(tools.calls, (std::vector<Texts>{{"/usr/sbin/pkgutil", "--forget", "com.a"},
                                             {"/usr/sbin/pkgutil", "--forget", "com.b c"}}))
      << "what looks like an option is no identifier";
}

TEST(Uninstalling, ofAFailedSessionDoesNothing) {
  doubles::FakeTools tools;
  InstallerSession failed = sessionOf({});
  failed.status = InstallerSessionStatus::failed;
  SessionUninstaller::carryOut(tools.platform(), failed);
  EXPECT_TRUE(tools.calls.empty());
}

TEST(Uninstalling, neverTouchesWhatNoInstallationCanHaveBrought) {
  scene::write("/Users/me/Documents/precious", "precious");
  scene::write("/Users/me/Library/Preferences/x.plist", "precious");
  scene::write(scene::manifest, "[]");
  scene::write("/Volumes/X9/ExternalQuarn/Data/Foo/precious", "precious");
  scene::write("/Volumes/X9/QuarnBackups/20260101/precious", "precious");
  scene::write("/Volumes/X9/Movies/precious", "precious");
  scene::makeApp(apps + "/Foo.app");
  scene::makeApp("/Applications/Foo.app");
  scene::link("/Applications/Away.app", "/Users/me/Documents");
  const Texts hostile = {"/",
                         "//",
                         "/.",
                         "/Users",
                         "/Users/me",
                         "/Users/me/",
                         "/Users/me/.",
                         "/Users/me/Documents",
                         "/Users/me/Documents/precious",
                         "/Users/me/Library",
                         "/Users/me/Library/Preferences/x.plist",
                         "/Users/me/Library/Application Support",
                         "/Users/me/Library/LaunchAgents",
                         "/Users/me/Applications",
                         "/Users/me/Library/Application Support/Quarn",
                         scene::manifest,
                         "/Users/me/Library/Application Support/Quarn/InstallerSessions",
                         "/Applications",
                         "/Applications/",
                         "/Applications/.",
                         "/Applications/Utilities",
                         "/Library",
                         "/Library/Application Support",
                         "/Library/LaunchDaemons",
                         "/Library/PrivilegedHelperTools",
                         "/Volumes",
                         "/Volumes/X9",
                         "/Volumes/X9/",
                         "/Volumes/X9/ExternalQuarn",
                         apps,
                         "/Volumes/X9/ExternalQuarn/Data",
                         "/Volumes/X9/ExternalQuarn/Data/Foo",
                         "/Volumes/X9/ExternalQuarn/Data/Foo/precious",
                         "/Volumes/X9/QuarnBackups",
                         "/Volumes/X9/QuarnBackups/20260101",
                         "/Volumes/X9/Movies",
                         "/Applications/../Users/me/Documents",
                         "/Applications/Foo.app/../../Users/me/Documents",
                         "/Applications/Away.app/precious",
                         "Applications/Foo.app",
                         "Foo.app",
                         "",
                         "/usr/bin",
                         "/etc",
                         "/tmp",
                         std::string("/Applications/Foo.app\0x", 23)};
  const auto home = scene::tree("/Users"), volumes = scene::tree("/Volumes"),
             applications = scene::tree("/Applications"), library = scene::tree("/Library");
  for (const std::string& path : hostile) {
    EXPECT_FALSE(allows(path)) << path;
    uninstall(sessionOf({path}));
  }
  EXPECT_EQ(scene::tree("/Users"), home);
  EXPECT_EQ(scene::tree("/Volumes"), volumes);
  EXPECT_EQ(scene::tree("/Applications"), applications);
  EXPECT_EQ(scene::tree("/Library"), library);
}

TEST(Uninstalling, takesALinkAsALink) {
  scene::write("/Users/me/Documents/precious", "precious");
  scene::link("/Applications/Foo.app", "/Users/me/Documents");
  uninstall(sessionOf({"/Applications/Foo.app"}));
  EXPECT_EQ(scene::target("/Users/me/.Trash/Foo.app"), "/Users/me/Documents");
  EXPECT_EQ(scene::read("/Users/me/Documents/precious"), "precious");
}

TEST(Uninstalling, aFolderThatHasBecomeALinkLeadsNowhereElse) {
  scene::write("/Users/me/Documents/thesis", "precious");
  scene::link("/Library/Application Support/Vendor", "/Users/me/Documents");
  EXPECT_FALSE(allows("/Library/Application Support/Vendor/thesis"));
  EXPECT_TRUE(allows("/Library/Application Support/Vendor"));
}

TEST(Uninstalling, aVolumeMountedMeanwhileIsNotTakenAlong) {
  if (!scene::hasMounts()) GTEST_SKIP() << "this room has no mounts";
  scene::makeFolder("/Applications/Foo.app/mounted");
  EXPECT_TRUE(allows("/Applications/Foo.app"));
  scene::plug("Inner", "1m");
  ASSERT_EQ(::system("mount --bind /Volumes/Inner /Applications/Foo.app/mounted"), 0);
  EXPECT_FALSE(allows("/Applications/Foo.app"));
  EXPECT_FALSE(allows("/Applications/Foo.app/mounted"));
}

TEST(Uninstalling, aLauncherIsKnownWhereverItIs) {
  scene::makeLauncher("/Users/me/Launchers/Foo.app", apps + "/Foo.app");
  scene::makeApp("/Users/me/Launchers/Bar.app");
  EXPECT_TRUE(allows("/Users/me/Launchers/Foo.app"));
  EXPECT_FALSE(allows("/Users/me/Launchers/Bar.app"));
  EXPECT_FALSE(allows("/Users/me/Launchers"));
}

TEST(Uninstalling, theFolderForApplicationsIsThatOfTheSessionsDriveAndOption) {
  scene::makeApp("/Volumes/X9/Own/Apps/Foo.app");
  scene::makeApp(apps + "/Foo.app");
  scene::write(
      "/Users/me/Library/Application Support/Quarn/InstallerOptions/own.toml",
      "id = \"own\"\nlabel = \"Own\"\nstrategy = \"x\"\nsourceKinds = []\nallowUntrustedPackages = false\n"
      "externalRootName = \"Own\"\napplicationLinkRoot = \"/Applications\"\ntrack = true\n"
      "relocateSafeApps = false\n");
  InstallerSession own = sessionOf({});
  own.optionID = "own";
  EXPECT_TRUE(allows("/Volumes/X9/Own/Apps/Foo.app", own));
  EXPECT_FALSE(allows(apps + "/Foo.app", own));
  EXPECT_TRUE(allows(apps + "/Foo.app"));
  InstallerSession gone = sessionOf({});
  gone.optionID = "gone";
  EXPECT_TRUE(allows(apps + "/Foo.app", gone));
  for (const char* drive : {"", "/Volumes/Away", "/Volumes/X9/ExternalQuarn/Apps/..", "Volumes/X9"}) {
    InstallerSession other = sessionOf({});
    other.targetDrivePath = drive;
    EXPECT_FALSE(allows(apps + "/Foo.app", other)) << drive;
  }
}

TEST(Uninstalling, leavesWhatCannotBeResolved) {
  const std::string item = "/Users/me/Library/Application Support/Foo/settings";
  scene::write(item, "mine");
  EXPECT_TRUE(allows(item));
  const Unresolving files("/Users/me/Library/Application Support/Foo");
  Unresolving writable = files;
  const Platform platform = replacing({.files = &writable});
  EXPECT_FALSE(ChangedPathGuard(platform, sessionOf({})).allows(Path(item)));
}

}  // namespace
}  // namespace quarn
