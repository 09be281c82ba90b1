#include <filesystem>

#include "QuarnCore/discovery/AssociatedDataPaths.h"
#include "QuarnCore/discovery/InfoPlist.h"
#include "tests/support/Doubles.h"
#include "tests/support/Scene.h"

namespace quarn {
namespace {

const std::string bundle = "/Applications/Foo.app";

void writePlist(const std::string& body) {
  scene::write(bundle + "/Contents/Info.plist",
               "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">" + body + "</plist>\n");
}

void writeDictionary(const std::string& pairs) {
  writePlist("<dict>" + pairs + "</dict>");
}

std::optional<BundleInfoPlistReader::Info> read() {
  return BundleInfoPlistReader::read(hostPlatform(), Path(bundle));
}

std::optional<std::string> readIdentifier() {
  return BundleIdentifierReader::read(hostPlatform(), Path(bundle));
}

TEST(BundleInfoPlistReader, givesTheIdentifierAndTheShortVersion) {
  writeDictionary(
      "<key>CFBundleIdentifier</key><string>com.example.foo</string>"
      "<key>CFBundleVersion</key><string>4711</string>"
      "<key>CFBundleShortVersionString</key><string>1.2</string>");
  EXPECT_EQ(read(), (BundleInfoPlistReader::Info{"com.example.foo", "1.2"}));
  EXPECT_EQ(readIdentifier(), "com.example.foo");
}

TEST(BundleInfoPlistReader, theBuildVersionStandsInForTheShortOne) {
  writeDictionary("<key>CFBundleVersion</key><string>4711</string>");
  EXPECT_EQ(read(), (BundleInfoPlistReader::Info{std::nullopt, "4711"}));
  EXPECT_EQ(readIdentifier(), std::nullopt);
}

TEST(BundleInfoPlistReader, aShortVersionThatIsNoTextCountsAsNone) {
  writeDictionary(
      "<key>CFBundleShortVersionString</key><integer>3</integer>"
      "<key>CFBundleVersion</key><string>4711</string>"
      "<key>CFBundleIdentifier</key><true/>");
  EXPECT_EQ(read(), (BundleInfoPlistReader::Info{std::nullopt, "4711"}));
}

TEST(BundleInfoPlistReader, anEmptyShortVersionIsAVersion) {
  writeDictionary(
      "<key>CFBundleShortVersionString</key><string></string>"
      "<key>CFBundleVersion</key><string>4711</string>");
  EXPECT_EQ(read(), (BundleInfoPlistReader::Info{std::nullopt, ""}));
}

TEST(BundleInfoPlistReader, aDictionaryWithoutTheKeysIsAnEmptyAnswer) {
  writeDictionary("");
  EXPECT_EQ(read(), (BundleInfoPlistReader::Info{}));
}

TEST(BundleInfoPlistReader, aBundleWithoutAPropertyListGivesNothing) {
  scene::makeFolder(bundle + "/Contents");
  EXPECT_EQ(read(), std::nullopt);
  EXPECT_EQ(readIdentifier(), std::nullopt);
  EXPECT_EQ(BundleInfoPlistReader::read(hostPlatform(), Path("/Applications/None.app")), std::nullopt);
}

TEST(BundleInfoPlistReader, whatIsNoDictionaryGivesNothing) {
  writePlist("<array><string>com.example.foo</string></array>");
  EXPECT_EQ(read(), std::nullopt);
}

TEST(BundleInfoPlistReader, aBrokenPropertyListGivesNothing) {
  for (const std::string broken : {"<plist><dict><key>CFBundleIdentifier</key>", "not xml at all {{{", ""}) {
    scene::write(bundle + "/Contents/Info.plist", broken);
    EXPECT_EQ(read(), std::nullopt) << broken;
    EXPECT_EQ(readIdentifier(), std::nullopt) << broken;
  }
}

TEST(BundleInfoPlistReader, aFolderInItsPlaceGivesNothing) {
  scene::makeFolder(bundle + "/Contents/Info.plist");
  EXPECT_EQ(read(), std::nullopt);
}

TEST(BundleInfoPlistReader, readsThroughALinkToABundle) {
  writeDictionary("<key>CFBundleIdentifier</key><string>com.example.foo</string>");
  scene::link("/Users/me/Link.app", bundle);
  EXPECT_EQ(BundleIdentifierReader::read(hostPlatform(), Path("/Users/me/Link.app")), "com.example.foo");
}

TEST(SupplementalInstall, isABundleInsideASupportFolder) {
  const doubles::FakePlaces places;
  const std::vector<std::pair<std::string, bool>> expected = {
      {"/Library/Application Support/Foo/Foo.app", true},
      {"/Users/me/Library/Application Support/Foo/Foo.app", true},
      {"/Volumes/X9/Library/Application Support/Foo.app", true},
      {"/Applications/Foo.app/Contents/Library/Application Support/x", false},
      {"/Applications/Foo.app", false},
      {"/System/Applications/Library/Application Support/x.app", false},
      {"/System/ApplicationsOld/Library/Application Support/x.app", false},
      {"/Users/me/Applications/Library/Application Support/x.app", false},
      {"/Users/you/Applications/Library/Application Support/x.app", true},
      {"/ApplicationsOld/Library/Application Support/x.app", true},
      {"/Users/me/Library/Application Support", false},
      {"/Users/me/Foo.app", false},
      {"", false},
  };
  for (const auto& [path, matches] : expected) {
    EXPECT_EQ(SupplementalInstall::matches(places, path), matches) << path;
  }
}

TEST(SupplementalInstall, followsTheHomeOfTheUser) {
  doubles::FakePlaces places;
  places.homeFolder = Path("/Users/you");
  EXPECT_FALSE(
      SupplementalInstall::matches(places, "/Users/you/Applications/Library/Application Support/x.app"));
}

}  // namespace
}  // namespace quarn
