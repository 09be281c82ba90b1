#include <algorithm>
#include <gtest/gtest.h>

#include "QuarnCore/foundation/SizeCalculator.h"
#include "QuarnCore/health/SymlinkScanning.h"
#include "tests/health/Looking.h"
#include "tests/support/Child.h"
#include "tests/support/Doubles.h"

namespace quarn {
namespace {

using Names = std::vector<std::string>;
using Link = ApplicationsRootScan::Symlink;

const std::string moved = "/Volumes/X9/ExternalQuarn/Apps/";

std::int64_t sizeOf(const std::string& path) {
  return SizeCalculator::size(hostPlatform(), Path(path));
}

Names names(const TextSet& set) {
  return {set.begin(), set.end()};
}

ApplicationsRootScan::Result scan(const Names& roots = {"/Applications"}) {
  return ApplicationsRootScan::scan(hostPlatform(), paths(roots));
}

TEST(ApplicationsRootScan, noRootsGiveNothing) {
  scene::makeApp("/Applications/Foo.app");
  EXPECT_EQ(scan({}), ApplicationsRootScan::Result{});
}

TEST(ApplicationsRootScan, aMissingRootIsLikeAnEmptyOne) {
  scene::makeFolder("/Applications/Empty");
  EXPECT_EQ(scan({"/Applications/Empty"}), ApplicationsRootScan::Result{});
  EXPECT_EQ(scan({"/Applications/Missing"}), ApplicationsRootScan::Result{});
}

TEST(ApplicationsRootScan, tellsLinksAndRealBundlesApartRootByRoot) {
  scene::makeApp("/Applications/Real.app");
  scene::link("/Applications/Moved.app", moved + "Moved.app");
  scene::makeApp("/Users/me/Applications/Own.app");
  scene::link("/Users/me/Applications/Moved.app", moved + "Other.app");
  const auto found = scan({"/Users/me/Applications", "/nowhere", "/Applications"});
  EXPECT_EQ(found.symlinks,
            (std::vector<Link>{{Path("/Users/me/Applications/Moved.app"), Path(moved + "Other.app")},
                               {Path("/Applications/Moved.app"), Path(moved + "Moved.app")}}));
  EXPECT_EQ(names(found.realAppNames), (Names{"Own.app", "Real.app"}));
}

TEST(ApplicationsRootScan, keepsTheOrderOfTheDisk) {
  for (const char* name : {"c", "a", "d", "b", "e"})
    scene::link(std::string("/Users/me/Applications/") + name + ".app", "/t");
  Names found;
  for (const Link& link : scan({"/Users/me/Applications"}).symlinks) found.push_back(link.location.text());
  EXPECT_EQ(found, inOrderOfDisk("/Users/me/Applications"));
}

TEST(ApplicationsRootScan, aTargetIsResolvedAgainstTheFolderOfTheLinkAndSimplified) {
  const std::pair<const char*, const char*> rows[] = {
      {"../Volumes/X9/Foo.app", "/Volumes/X9/Foo.app"},
      {"./Foo 2.app", "/Applications/Foo 2.app"},
      {"../../../Foo.app", "/Foo.app"},
      {"/Volumes//X9/./Apps/../Foo.app/", "/Volumes/X9/Foo.app"},
      {"/", "/"},
  };
  for (const auto& [text, target] : rows) {
    scene::link("/Applications/Foo.app", text);
    EXPECT_EQ(scan().symlinks, (std::vector<Link>{{Path("/Applications/Foo.app"), Path(target)}})) << text;
    std::filesystem::remove("/Applications/Foo.app");
  }
}

TEST(ApplicationsRootScan, aLinkIsFollowedNoFurtherThanItsText) {
  scene::makeApp(moved + "Foo.app");
  scene::link("/Volumes/X9/Way.app", moved + "Foo.app");
  scene::link("/Applications/Foo.app", "/Volumes/X9/Way.app");
  scene::link("/Applications/Self.app", "Self.app");
  for (const Link& link : scan().symlinks)
    EXPECT_EQ(link.target.text(),
              link.location.lastComponent() == "Self.app" ? "/Applications/Self.app" : "/Volumes/X9/Way.app");
  EXPECT_EQ(scan().symlinks.size(), 2u);
}

TEST(ApplicationsRootScan, aLinkWhoseTextCannotBeReadIsInNeitherList) {
  scene::link("/Applications/Foo.app", moved + "Foo.app");
  Blinded files;
  files.withoutText = {"/Applications/Foo.app"};
  EXPECT_EQ(ApplicationsRootScan::scan(replacing({.files = &files}), paths({"/Applications"})),
            (ApplicationsRootScan::Result{.symlinks = {}, .realAppNames = {}, .isWhole = false}));
}

TEST(ApplicationsRootScan, whatCannotBeLookedUpCountsAsReal) {
  scene::link("/Users/me/Applications/Foo.app", moved + "Foo.app");
  // Its names may be read, but nothing below it may be looked up.
  std::filesystem::permissions("/Users/me/Applications", std::filesystem::perms(0444));
  EXPECT_EQ(child::failuresWithoutRights([] {
              const auto found = scan({"/Users/me/Applications"});
              EXPECT_TRUE(found.symlinks.empty());
              EXPECT_EQ(names(found.realAppNames), Names{"Foo.app"});
              EXPECT_FALSE(found.isWhole);
            }),
            "");
}

TEST(ApplicationsRootScan, aRootThatMayNotBeReadOrIsALinkIsSkipped) {
  scene::makeApp("/Users/me/Closed/Foo.app");
  scene::makeApp("/Applications/Bar.app");
  scene::link("/Users/me/Link", "/Applications");
  std::filesystem::permissions("/Users/me/Closed", std::filesystem::perms(0));
  EXPECT_EQ(child::failuresWithoutRights([] {
              const auto found = scan({"/Users/me/Closed", "/Applications"});
              EXPECT_EQ(names(found.realAppNames), Names{"Bar.app"});
              EXPECT_FALSE(found.isWhole);
              EXPECT_EQ(scan({"/Users/me/Link"}),
                        (ApplicationsRootScan::Result{.symlinks = {}, .realAppNames = {}, .isWhole = false}));
            }),
            "");
}

TEST(ApplicationsRootScan, hiddenAndOtherNamesAreNotSeenNorIsAnythingInFolders) {
  for (const char* name :
       {".Hidden.app", "A.APP", "B.apps", "C.app.bak", "Dapp", ".app", "E.a pp", "Folder/In.app"})
    scene::makeFolder(std::string("/Applications/") + name);
  scene::link("/Applications/Link", moved + "Foo.app");
  scene::link("/Applications/.Hidden link.app", moved + "Foo.app");
  EXPECT_EQ(scan(), ApplicationsRootScan::Result{});
}

TEST(ApplicationsRootScan, aFileCountsAsRealToo) {
  scene::write("/Applications/Foo.app", "no bundle");
  EXPECT_EQ(names(scan().realAppNames), Names{"Foo.app"});
}

TEST(ApplicationsRootScan, oddNamesAreTakenAsTheyAre) {
  std::map<std::string, std::string> expected;
  for (const std::string& name : oddNames()) {
    scene::link("/Applications/" + name + ".app", "/Volumes/X9/" + name + "\n.app");
    expected["/Applications/" + name + ".app"] = "/Volumes/X9/" + name + "\n.app";
  }
  std::map<std::string, std::string> found;
  for (const Link& link : scan().symlinks) found[link.location.text()] = link.target.text();
  EXPECT_EQ(found, expected);
}

TEST(ApplicationsRootScan, aNameIsFoundInAnySpelling) {
  scene::makeFolder("/Applications/Caf\u00E9.app");
  const TextSet real = scan().realAppNames;
  EXPECT_TRUE(real.contains("Cafe\u0301.app"));
  EXPECT_FALSE(real.contains("caf\u00E9.app"));
}

TEST(ApplicationsRootScan, findsTenThousandLinks) {
  for (int i = 0; i < 10'000; ++i) scene::link("/Applications/" + std::to_string(i) + ".app", "/t");
  EXPECT_EQ(scan().symlinks.size(), 10'000u);
}

std::vector<SymlinkEntry> entries(const Names& roots) {
  return SymlinkScanner::scan(hostPlatform(), paths(roots));
}

SymlinkEntry entry(const std::string& at, const std::string& target, bool isValid, std::int64_t size) {
  return {.id = at, .location = Path(at), .target = Path(target), .isValid = isValid, .targetSize = size};
}

TEST(SymlinkScanner, looksInSevenFoldersByDefault) {
  const doubles::FakePlaces places{Path("/Users/you")};
  EXPECT_EQ(SymlinkScanner::defaultRoots(places),
            paths({"/Applications", "/Users/you/Applications", "/Users/you/Library/Application Support",
                   "/Users/you/Library/Containers", "/Users/you/Library/Group Containers", "/Users/you/Music",
                   "/Users/you"}));
}

TEST(SymlinkScanner, findsLinksOfAnyNameAndTypeSortedByPath) {
  scene::writeBytes("/Volumes/X9/song", 20'000);
  scene::makeApp(moved + "Foo.app");
  scene::link("/Users/me/Music/song.aif", "../../../Volumes/X9/song");
  scene::link("/Users/me/Gone", "/Volumes/X9/./gone/");
  scene::link("/Applications/Foo.app", moved + "Foo.app");
  scene::link("/Users/me/.hidden", "/Volumes/X9/song");
  scene::write("/Users/me/file", "no link");
  EXPECT_GT(sizeOf("/Volumes/X9/song"), 0);
  EXPECT_EQ(entries({"/Users/me", "/nowhere", "/Users/me/Music", "/Applications"}),
            (std::vector{
                entry("/Applications/Foo.app", moved + "Foo.app", true, sizeOf(moved + "Foo.app")),
                entry("/Users/me/Gone", "/Volumes/X9/gone", false, 0),
                entry("/Users/me/Music/song.aif", "/Volumes/X9/song", true, sizeOf("/Volumes/X9/song")),
            }));
}

TEST(SymlinkScanner, sortsByCodePointsWithLetterCase) {
  for (const char* name : {"b", "B", "a", "\u00E9", "Z", "10", "9"})
    scene::link(std::string("/Users/me/Music/") + name, "/t");
  Names found;
  for (const SymlinkEntry& one : entries({"/Users/me/Music"})) found.push_back(one.location.lastComponent());
  EXPECT_EQ(found, (Names{"10", "9", "B", "Z", "a", "b", "\u00E9"}));
}

TEST(SymlinkScanner, aLinkReachedThroughTwoRootsIsListedOnce) {
  scene::link("/Users/me/Music/a", "/t");
  EXPECT_EQ(entries({"/Users/me/Music", "/Users/me/Music/", "/Users/me/Music"}).size(), 1u);
}

TEST(SymlinkScanner, skipsWhatCannotBeLookedUpOrRead) {
  for (const char* name : {"a", "b", "c"}) scene::link(std::string("/Users/me/Music/") + name, "/t");
  Blinded files;
  files.withoutAttributes = {"/Users/me/Music/a"};
  files.withoutText = {"/Users/me/Music/b"};
  const auto found = SymlinkScanner::scan(replacing({.files = &files}), paths({"/Users/me/Music"}));
  EXPECT_EQ(found, (std::vector{entry("/Users/me/Music/c", "/t", false, 0)}));
}

HealthIssue inspected(const std::string& target) {
  return SymlinkInspector::inspect(hostPlatform(), Path("/Applications/Foo.app"), Path(target));
}

HealthIssue expected(HealthIssue::Kind kind, const std::string& target, const std::string& detail,
                     std::int64_t size) {
  return {.kind = kind,
          .location = Path("/Applications/Foo.app"),
          .target = Path(target),
          .detail = detail,
          .sizeBytes = size};
}

const std::string bundle = "/Volumes/X9/Foo.app";
const std::string isMissing =
    "Target does not exist. The external drive may be unmounted, or the file was deleted.";
const std::string isEmpty = "Bundle directory exists but has no Contents/Info.plist. App is unlaunchable.";
const std::string isCorrupted = "Bundle has Info.plist but no executable in Contents/MacOS/.";

TEST(SymlinkInspector, aMissingTargetIsDangling) {
  EXPECT_EQ(inspected(bundle), expected(HealthIssue::Kind::dangling, bundle, isMissing, 0));
}

TEST(SymlinkInspector, aChainThatEndsNowhereOrNeverIsDangling) {
  scene::link("/Volumes/X9/Way.app", "/Volumes/X9/Gone.app");
  scene::link("/Volumes/X9/Loop.app", "Loop.app");
  for (const char* target : {"/Volumes/X9/Way.app", "/Volumes/X9/Loop.app"})
    EXPECT_EQ(inspected(target), expected(HealthIssue::Kind::dangling, target, isMissing, 0));
}

TEST(SymlinkInspector, aTargetWithoutAPropertyListIsEmptyAndMeasured) {
  scene::writeBytes(bundle + "/Contents/MacOS/Foo", 20'000);
  EXPECT_GE(sizeOf(bundle), 20'000);
  EXPECT_EQ(inspected(bundle), expected(HealthIssue::Kind::empty, bundle, isEmpty, sizeOf(bundle)));
}

TEST(SymlinkInspector, aFileAsTargetIsEmptyWithItsOwnSize) {
  scene::writeBytes(bundle, 20'000);
  EXPECT_GE(sizeOf(bundle), 20'000);
  EXPECT_EQ(inspected(bundle), expected(HealthIssue::Kind::empty, bundle, isEmpty, sizeOf(bundle)));
}

TEST(SymlinkInspector, aBundleWithoutAnythingToExecuteIsCorruptedAndMeasured) {
  scene::write(bundle + "/Contents/Info.plist", "garbage");
  const auto corrupted = expected(HealthIssue::Kind::corrupted, bundle, isCorrupted, sizeOf(bundle));
  EXPECT_GT(corrupted.sizeBytes, 0);
  EXPECT_EQ(inspected(bundle), corrupted) << "no folder";
  scene::makeFolder(bundle + "/Contents/MacOS");
  EXPECT_EQ(inspected(bundle), corrupted) << "an empty folder";
}

TEST(SymlinkInspector, aFolderOfExecutablesThatMayNotBeListedCountsAsEmpty) {
  scene::makeApp(bundle);
  std::filesystem::permissions(bundle + "/Contents/MacOS", std::filesystem::perms(0));
  EXPECT_EQ(
      child::failuresWithoutRights([] { EXPECT_EQ(inspected(bundle).kind, HealthIssue::Kind::corrupted); }),
      "");
}

TEST(SymlinkInspector, aPropertyListAndAnyFileAreHealthy) {
  scene::write(bundle + "/Contents/Info.plist", "garbage");
  scene::write(bundle + "/Contents/MacOS/.not executable", "x");
  EXPECT_EQ(inspected(bundle), expected(HealthIssue::Kind::healthy, bundle, "", sizeOf(bundle)));
}

TEST(SymlinkInspector, executablesBehindALinkAreHealthy) {
  scene::makeApp(bundle);
  std::filesystem::rename(bundle + "/Contents/MacOS", bundle + "/Contents/Real");
  scene::link(bundle + "/Contents/MacOS", "Real");
  EXPECT_EQ(inspected(bundle).kind, HealthIssue::Kind::healthy);
}

TEST(SymlinkInspector, looksThroughAChainOfLinks) {
  scene::makeApp(bundle);
  scene::link("/Volumes/X9/Way.app", bundle);
  EXPECT_EQ(inspected("/Volumes/X9/Way.app").kind, HealthIssue::Kind::healthy);
}

}  // namespace
}  // namespace quarn
