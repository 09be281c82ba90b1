#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>

#include "Platform/HostPlatform.h"
#include "QuarnCore/launchers/LauncherShimCleaner.h"
#include "tests/launchers/Building.h"
#include "tests/support/Doubles.h"
#include "tests/support/NothingLost.h"

namespace quarn {
namespace {

using namespace building;
namespace fs = std::filesystem;

/// What was trashed for the application on the drive, sorted.
Lines cleaned(const std::string& target = app, Platform platform = hostPlatform()) {
  Lines paths;
  for (const Path& path : LauncherShimCleaner::cleanupShims(platform, Path(target)))
    paths.push_back(path.text());
  std::sort(paths.begin(), paths.end());
  return paths;
}

void makeShim(const std::string& at, const std::string& text) {
  scene::makeLauncher(at, app);
  scene::write(at + targetFile, text);
}

TEST(ShimCleaner, launchersInBothFoldersGoToTheTrash) {
  makeShim("/Applications/Foo.app", app);
  makeShim("/Applications/Renamed.app", app + "\n");
  makeShim("/Users/me/Applications/Foo.app", "  " + app);
  const Lines shim = scene::tree("/Applications/Renamed.app");
  EXPECT_EQ(cleaned(),
            (Lines{"/Applications/Foo.app", "/Applications/Renamed.app", "/Users/me/Applications/Foo.app"}));
  EXPECT_EQ(scene::tree("/Users/me/.Trash/Renamed.app"), shim);
  EXPECT_EQ(namesIn("/Applications"), Lines{"Utilities"});
}

TEST(ShimCleaner, bothPathsAreStandardizedBeforeTheyAreCompared) {
  for (const std::string text :
       {"/Volumes/X9/./ExternalQuarn/Apps/Foo.app", "/Volumes/X9/ExternalQuarn/Apps/Foo.app/",
        "/Volumes//X9/ExternalQuarn/Data/../Apps/Foo.app"}) {
    makeShim("/Applications/Foo.app", text);
    EXPECT_EQ(cleaned("/Volumes/X9/ExternalQuarn/./Apps/Foo.app/"), Lines{"/Applications/Foo.app"}) << text;
  }
  makeShim("/Applications/Foo.app", "/Volumes/X9/Cafe\u0301.app");
  EXPECT_EQ(cleaned("/Volumes/X9/Caf\u00E9.app"), Lines{"/Applications/Foo.app"});
}

TEST(ShimCleaner, whatIsNoLauncherOfTheTargetStays) {
  scene::makeApp(app);
  scene::makeApp("/Applications/Real.app");
  scene::link("/Applications/Foo.app", app);
  makeShim("/Applications/Other.app", app + "x");
  makeShim("/Applications/Below.app", app + "/Contents");
  makeShim("/Applications/Above.app", "/Volumes/X9/ExternalQuarn/Apps");
  makeShim("/Applications/Empty.app", "");
  makeShim("/Applications/Blank.app", " \n");
  makeShim("/Applications/Garbage.app", "\xFF" + app);
  makeShim("/Applications/Nul.app", app + std::string(1, '\0'));
  makeShim("/Applications/Long.app", app + std::string(1'000'000, 'x'));
  makeShim("/Applications/Folder", app);
  makeShim("/Applications/Upper.APP", app);
  makeShim("/Applications/Utilities/Deep.app", app);
  makeShim("/Volumes/X9/Shim.app", app);
  scene::link("/Applications/Link.app", "/Volumes/X9/Shim.app");
  const NothingLost oracle(app);
  EXPECT_EQ(cleaned(), Lines());
  EXPECT_EQ(oracle.foreignChanges({}), "");
}

TEST(ShimCleaner, anEmptyTargetFileNeverStandsForTheCurrentFolder) {
  makeShim("/Applications/Empty.app", "\n");
  EXPECT_EQ(cleaned(hostPlatform().places.currentFolder().text()), Lines());
}

TEST(ShimCleaner, whatTheTrashRefusesStaysAndIsNotReturned) {
  makeShim("/Applications/Foo.app", app);
  const Lines before = scene::tree("/Applications");
  doubles::RefusingTrash refusing;
  EXPECT_EQ(cleaned(app, replacing({.trash = &refusing})), Lines());
  EXPECT_EQ(refusing.asked, 1);
  EXPECT_EQ(scene::tree("/Applications"), before);
}

TEST(ShimCleaner, withoutAFolderOfOnesOwnTheSharedOneIsSearched) {
  fs::remove_all("/Users/me/Applications");
  makeShim("/Applications/Foo.app", app);
  EXPECT_EQ(cleaned(), Lines{"/Applications/Foo.app"});
}

}  // namespace
}  // namespace quarn
