#include <filesystem>
#include <sys/stat.h>

#include "QuarnCore/installer/InstallerOptionLoader.h"
#include "tests/support/Child.h"
#include "tests/support/Doubles.h"
#include "tests/support/Replacing.h"
#include "tests/support/Scene.h"

namespace quarn {
namespace {

using List = std::vector<std::string>;

const std::string userFolder = "/Users/me/Library/Application Support/Quarn/InstallerOptions";
const std::string shippedFolder = "/Users/me/opt/share/quarn/InstallerOptions";

std::string option(const std::string& id, const std::string& label, const std::string& more = "") {
  return "id = '" + id + "'\nlabel = '" + label +
         "'\nstrategy = 's'\nsourceKinds = ['app']\nallowUntrustedPackages = false\n"
         "externalRootName = 'ExternalQuarn'\napplicationLinkRoot = '/Applications'\ntrack = true\n"
         "relocateSafeApps = false\n" +
         more;
}

/// A program in "/Users/me/opt/bin" whose shipped folder the test fills.
struct InstallerOptions : testing::Test {
  doubles::FakePlaces places;
  Platform platform = replacing({.places = &places});

  InstallerOptions() { places.program = Path("/Users/me/opt/bin/quarn"); }

  List labels(const std::string& root = userFolder) {
    List found;
    for (const auto& each : InstallerOptionLoader::loadAll(platform, Path(root))) found.push_back(each.label);
    return found;
  }
};

TEST_F(InstallerOptions, areSortedByLabelWhereverTheyLie) {
  scene::write(shippedFolder + "/1.toml", option("one", "Middle"));
  scene::write(shippedFolder + "/2.toml", option("two", "Zebra"));
  scene::write(userFolder + "/1.toml", option("three", "apple"));
  scene::write(userFolder + "/2.toml", option("four", "Apple"));
  EXPECT_EQ(labels(), (List{"Apple", "Middle", "Zebra", "apple"}));
}

TEST_F(InstallerOptions, ofTheUserReplaceShippedOnesAsAWhole) {
  scene::write(shippedFolder + "/a.toml", option("same", "Shipped", "allowUntrustedScripts = true\n"));
  scene::write(userFolder + "/a.toml", option("same", "Mine"));
  const auto found = InstallerOptionLoader::find(platform, "same");
  ASSERT_TRUE(found);
  EXPECT_EQ(found->label, "Mine");
  EXPECT_FALSE(found->allowUntrustedScripts);
  EXPECT_EQ(labels(), List{"Mine"});
}

TEST_F(InstallerOptions, ofTheUserCountWhateverTheShippedFileIsCalled) {
  scene::write(shippedFolder + "/z.toml", option("same", "Shipped"));
  scene::write(userFolder + "/a.toml", option("same", "Mine"));
  EXPECT_EQ(labels(), List{"Mine"});
}

TEST_F(InstallerOptions, ofOneFolderReplaceEachOtherInTheOrderOfTheirPaths) {
  scene::write(userFolder + "/b.toml", option("same", "From b"));
  scene::write(userFolder + "/a/z.toml", option("same", "From a/z"));
  scene::write(userFolder + "/B.toml", option("same", "From B"));
  EXPECT_EQ(labels(), List{"From b"});
}

TEST_F(InstallerOptions, areReadFromSubfoldersOfBothRoots) {
  scene::write(shippedFolder + "/sub/1.toml", option("one", "One"));
  scene::write(userFolder + "/sub/deeper/2.toml", option("two", "Two"));
  EXPECT_EQ(labels(), (List{"One", "Two"}));
}

TEST_F(InstallerOptions, areKnownByTheirExtensionInAnyLetterCase) {
  scene::write(userFolder + "/a.TOML", option("one", "Capitals"));
  scene::write(userFolder + "/b.Toml", option("two", "Mixed"));
  scene::write(userFolder + "/c.tom", option("three", "Short"));
  scene::write(userFolder + "/d.toml.bak", option("four", "Backup"));
  scene::write(userFolder + "/toml", option("five", "Bare"));
  EXPECT_EQ(labels(), (List{"Capitals", "Mixed"}));
}

TEST_F(InstallerOptions, thatAreHiddenOrInAHiddenFolderAreNotRead) {
  scene::write(userFolder + "/.hidden.toml", option("one", "Hidden"));
  scene::write(userFolder + "/.folder/a.toml", option("two", "In a hidden folder"));
  scene::write(userFolder + "/seen.toml", option("three", "Seen"));
  EXPECT_EQ(labels(), List{"Seen"});
}

TEST_F(InstallerOptions, thatAreBrokenDisappearWithoutAWord) {
  scene::write(userFolder + "/1.toml", option("one", "Good"));
  scene::write(userFolder + "/2.toml", "id = ");
  scene::write(userFolder + "/3.toml", std::string("\xFF\xFE", 2));
  scene::write(userFolder + "/4.toml", "");
  scene::write(userFolder + "/5.toml", option("five", "Twice", "id = 'again'\n"));
  scene::write(userFolder + "/6.toml", "id = 'six'\nlabel = 'No more keys'\n");
  scene::makeFolder(userFolder + "/7.toml");
  scene::link(userFolder + "/8.toml", "/nowhere");
  scene::write(userFolder + "/9.toml", option("nine", "Also good"));
  EXPECT_EQ(labels(), (List{"Also good", "Good"}));
}

TEST_F(InstallerOptions, thatCannotBeReadDisappearLikewise) {
  scene::write(userFolder + "/1.toml", option("one", "Good"));
  ASSERT_EQ(::mkfifo((userFolder + "/2.toml").c_str(), 0600), 0);
  scene::write(userFolder + "/3.toml", option("three", "Secret"));
  scene::write(userFolder + "/closed/4.toml", option("four", "In a closed folder"));
  EXPECT_EQ(labels(), (List{"Good", "In a closed folder", "Secret"}));
  ASSERT_EQ(::chmod((userFolder + "/3.toml").c_str(), 0), 0);
  ASSERT_EQ(::chmod((userFolder + "/closed").c_str(), 0), 0);
  EXPECT_EQ(child::failuresWithoutRights([&] { EXPECT_EQ(labels(), List{"Good"}); }), "");
}

TEST_F(InstallerOptions, thatAreBrokenReplaceNothing) {
  scene::write(shippedFolder + "/a.toml", option("same", "Shipped"));
  scene::write(userFolder + "/a.toml", "id = 'same'\nlabel = 'Half'\n");
  EXPECT_EQ(labels(), List{"Shipped"});
}

TEST_F(InstallerOptions, mayBeLinksToFiles) {
  scene::write("/Users/me/elsewhere.toml", option("one", "Linked"));
  scene::link(userFolder, "/nowhere");
  std::filesystem::remove(userFolder);
  scene::link(userFolder + "/a.toml", "/Users/me/elsewhere.toml");
  EXPECT_EQ(labels(), List{"Linked"});
}

TEST_F(InstallerOptions, mayBeginWithAByteOrderMarkAndEndLinesAsElsewhere) {
  std::string text = "\uFEFF" + option("one", "From afar");
  for (std::size_t at = 0; (at = text.find('\n', at)) != std::string::npos; at += 2) text.insert(at, "\r");
  scene::write(userFolder + "/a.toml", text);
  EXPECT_EQ(labels(), List{"From afar"});
}

TEST_F(InstallerOptions, areNoneWhereNoFolderIs) {
  EXPECT_EQ(labels(), List{});
  EXPECT_EQ(labels("/nowhere"), List{});
  EXPECT_EQ(InstallerOptionLoader::find(platform, "any"), std::nullopt);
}

// A build that lays its options right into the resources is read as well.
TEST_F(InstallerOptions, areLookedForInAllResourcesWhereTheirFolderIsMissing) {
  scene::write("/Users/me/opt/share/quarn/a.toml", option("one", "Loose"));
  EXPECT_EQ(labels(), List{"Loose"});
  scene::makeFolder(shippedFolder);
  EXPECT_EQ(labels(), List{});
}

TEST_F(InstallerOptions, areFoundByTheirIdentifierToTheLetter) {
  scene::write(userFolder + "/a.toml", option("One", "A"));
  scene::write(userFolder + "/b.toml", option("caf\u00E9", "B"));
  EXPECT_EQ(InstallerOptionLoader::find(platform, "One")->label, "A");
  EXPECT_EQ(InstallerOptionLoader::find(platform, "one"), std::nullopt);
  EXPECT_EQ(InstallerOptionLoader::find(platform, ""), std::nullopt);
  EXPECT_EQ(InstallerOptionLoader::find(platform, "cafe\u0301")->label, "B");
}

TEST(ShippedOptions, allowScriptsByOneNameAndTrustedSourcesByAnother) {
  const InstallerOption scripts{
      .id = "tracked-script-external",
      .label = "External drive, scripts allowed",
      .strategy = "external-tracked",
      .sourceKinds = {InstallerKind::app, InstallerKind::dmg, InstallerKind::zip, InstallerKind::pkg,
                      InstallerKind::mpkg, InstallerKind::script},
      .allowUntrustedPackages = true,
      .allowUntrustedScripts = true,
      .externalRootName = "ExternalQuarn",
      .applicationLinkRoot = "/Applications",
      .track = true,
      .relocateSafeApps = true};
  InstallerOption trusted = scripts;
  trusted.id = "trusted-external";
  trusted.label = "External drive, trusted sources";
  trusted.strategy = "external";
  trusted.sourceKinds.pop_back();
  trusted.allowUntrustedPackages = false;
  trusted.allowUntrustedScripts = false;
  EXPECT_EQ(InstallerOptionLoader::loadAll(hostPlatform(), Path("/nowhere")),
            (std::vector{scripts, trusted}));
  EXPECT_EQ(InstallerOptionLoader::find(hostPlatform(), "tracked-script-external"), scripts);
}

}  // namespace
}  // namespace quarn
