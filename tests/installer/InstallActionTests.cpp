#include <gtest/gtest.h>

#include "QuarnCore/installer/InstallAction.h"

namespace quarn::InstallAction {
namespace {

using Texts = std::vector<std::string>;

TEST(InstallAction, isALineOfFieldsBehindTabs) {
  EXPECT_EQ(line("snapshot-before"), "snapshot-before");
  EXPECT_EQ(line("inspect", {"app", "/a b"}), "inspect\tapp\t/a b");
  EXPECT_EQ(installedApp(Path("/Applications/Foo.app"), Path("/Volumes/X9/ExternalQuarn/Apps/Foo.app")),
            "installed-app\t/Applications/Foo.app\t/Volumes/X9/ExternalQuarn/Apps/Foo.app");
  EXPECT_EQ(installedPackage(Path("/a.pkg")), "installed-pkg\t/a.pkg");
  EXPECT_EQ(ranScript(Path("/a.sh")), "ran-script\t/a.sh");
  EXPECT_EQ(externalizeFailed(Path("/Applications/Foo.app"), PlatformError("x", 1, "It is full.")),
            "externalize-failed\t/Applications/Foo.app\tIt is full.");
  EXPECT_EQ(trash("/a\tb"), "trash\t/a\tb");
  EXPECT_EQ(forgetReceipt("com.example.a"), "forget-receipt\tcom.example.a");
}

TEST(InstallAction, whatWasInstalledIsReadBack) {
  EXPECT_EQ(installedPaths("installed-app\t/a\t/b"), (Texts{"/a", "/b"}));
  EXPECT_EQ(installedPaths(installedApp(Path("/a b\nc"), Path("/d"))), (Texts{"/a b\nc", "/d"}));
  EXPECT_EQ(installedPaths("\tinstalled-app\t\t/a\t\t/b\t"), (Texts{"/a", "/b"}))
      << "empty fields don't count";
  EXPECT_EQ(installedPaths("installed-app\t/a\t/b\tmore"), (Texts{"/a", "/b"}));
  for (const char* other : {"", "\t", "installed-app", "installed-app\t/a", "installed-apps\t/a\t/b",
                            "externalize-failed\t/a\t/b", "installed-pkg\t/a\t/b", "x installed-app\t/a\t/b"})
    EXPECT_EQ(installedPaths(other), Texts{}) << other;
}

TEST(InstallAction, aTabInAPathIsNotTakenForTheEndOfIt) {
  // Otherwise "/Applications/Foo" would be named, which may be something else.
  EXPECT_EQ(
      installedPaths(installedApp(Path("/Applications/Foo\tBar.app"), Path("/Volumes/X9/Foo\tBar.app"))),
      Texts{});
}

TEST(InstallAction, tellsAPackageAndAFailure) {
  EXPECT_TRUE(isInstalledPackage("installed-pkg\t/a.pkg"));
  EXPECT_TRUE(isInstalledPackage("installed-pkg\t"));
  EXPECT_FALSE(isInstalledPackage("installed-pkg"));
  EXPECT_FALSE(isInstalledPackage("installed-pkgs\t/a"));
  EXPECT_FALSE(isInstalledPackage(" installed-pkg\t/a"));
  EXPECT_TRUE(isExternalizeFailed("externalize-failed\t/a\tb"));
  EXPECT_FALSE(isExternalizeFailed("externalize-failed"));
  EXPECT_FALSE(isExternalizeFailed("installed-app\t/a\t/b"));
}

TEST(InstallAction, aStepIsAboutEverythingBehindItsFirstTab) {
  EXPECT_EQ(trashed("trash\t/a\tb c"), "/a\tb c");
  EXPECT_EQ(trashed("trash\t"), "");
  EXPECT_EQ(trashed("trash"), std::nullopt);
  EXPECT_EQ(trashed("trashes\t/a"), std::nullopt);
  EXPECT_EQ(trashed("forget-receipt\t/a"), std::nullopt);
  EXPECT_EQ(forgottenReceipt("forget-receipt\tcom.example.a"), "com.example.a");
  EXPECT_EQ(forgottenReceipt("trash\tcom.example.a"), std::nullopt);
}

}  // namespace
}  // namespace quarn::InstallAction
