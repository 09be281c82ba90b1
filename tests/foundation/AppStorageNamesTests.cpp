#include "QuarnCore/foundation/AppStorageNames.h"
#include "tests/support/Doubles.h"
#include "tests/support/Scene.h"

namespace quarn {
namespace {

const Path noDrive("/Volumes/Not There");

TEST(AppStorageNames, everyNameIsTheOneOnDisk) {
  EXPECT_EQ(AppStorageNames::externalRoot, "ExternalQuarn");
  EXPECT_EQ(AppStorageNames::apps, "Apps");
  EXPECT_EQ(AppStorageNames::data, "Data");
  EXPECT_EQ(AppStorageNames::plugins, "Plugins");
  EXPECT_EQ(AppStorageNames::folders, "Folders");
  EXPECT_EQ(AppStorageNames::installerCache, "InstallerCache");
  EXPECT_EQ(AppStorageNames::backupsRoot, "QuarnBackups");
  EXPECT_EQ(AppStorageNames::installerSessions, "InstallerSessions");
  EXPECT_EQ(AppStorageNames::installerOptions, "InstallerOptions");
  EXPECT_EQ(AppStorageNames::uninstallSessions, "UninstallSessions");
}

TEST(AppStorageNames, theOnlyFormerRootIsQuarn) {
  ASSERT_EQ(AppStorageNames::legacyExternalRoots.size(), 1U);
  EXPECT_EQ(AppStorageNames::legacyExternalRoots[0], "Quarn");
}

TEST(AppStorageNames, placesOnADriveNeedNoFolderToExist) {
  EXPECT_EQ(AppStorageNames::externalRootPath(noDrive).text(), "/Volumes/Not There/ExternalQuarn");
  EXPECT_EQ(AppStorageNames::appsRoot(noDrive).text(), "/Volumes/Not There/ExternalQuarn/Apps");
  EXPECT_EQ(AppStorageNames::dataRoot(noDrive).text(), "/Volumes/Not There/ExternalQuarn/Data");
  EXPECT_EQ(AppStorageNames::pluginsRoot(noDrive).text(), "/Volumes/Not There/ExternalQuarn/Plugins");
  EXPECT_EQ(AppStorageNames::foldersRoot(noDrive).text(), "/Volumes/Not There/ExternalQuarn/Folders");
  EXPECT_FALSE(scene::exists(noDrive.text()));
}

TEST(AppStorageNames, theStartupVolumeGetsNoDoubledSlash) {
  EXPECT_EQ(AppStorageNames::appsRoot(Path("/")).text(), "/ExternalQuarn/Apps");
}

TEST(AppStorageNames, theToolsOwnStateLiesInTheHomeOfTheUser) {
  doubles::FakePlaces places;
  places.homeFolder = Path("/Users/some one");
  const std::string support = "/Users/some one/Library/Application Support/Quarn";
  EXPECT_EQ(AppStorageNames::supportRoot(places).text(), support);
  EXPECT_EQ(AppStorageNames::sessionRoot(places).text(), support + "/InstallerSessions");
  EXPECT_EQ(AppStorageNames::userInstallerOptionsRoot(places).text(), support + "/InstallerOptions");
  EXPECT_EQ(AppStorageNames::uninstallSessionRoot(places).text(), support + "/UninstallSessions");
}

TEST(AppStorageNames, theHomeIsThatOfThePlatform) {
  EXPECT_EQ(AppStorageNames::supportRoot(hostPlatform().places).text(),
            scene::home + "/Library/Application Support/Quarn");
}

}  // namespace
}  // namespace quarn
