#include <algorithm>

#include "QuarnCore/health/DataLinkDetection.h"
#include "tests/health/Looking.h"
#include "tests/support/Child.h"
#include "tests/support/Doubles.h"

namespace quarn {
namespace {

using Names = std::vector<std::string>;

const std::string support = "/Users/me/Library/Application Support";
const std::string stale = "/Volumes/X9/Quarn/Data/Foo";
const std::string renamed = "/Volumes/X9/ExternalQuarn/Data/Foo";
const std::string withoutCopy =
    "App-data symlink target is missing. No relocated copy found; the app may crash at launch until "
    "re-linked.";

std::optional<Path> candidate(const std::string& path) {
  return StaleRootRetarget::candidate(hostPlatform(), Path(path));
}

TEST(StaleRootRetarget, givesThePathBelowTheNewNameIfSomethingIsThere) {
  EXPECT_EQ(candidate(stale), std::nullopt);
  scene::makeFolder(renamed);
  EXPECT_EQ(candidate(stale), Path(renamed));
}

TEST(StaleRootRetarget, replacesEveryComponentOfThatNameAndNoOther) {
  scene::makeFolder("/Volumes/X9/ExternalQuarn/a/ExternalQuarn/b");
  EXPECT_EQ(candidate("/Volumes/X9/Quarn/a/Quarn/b"), Path("/Volumes/X9/ExternalQuarn/a/ExternalQuarn/b"));
  scene::makeFolder("/ExternalQuarn/x");
  EXPECT_EQ(candidate("/Quarn/x"), Path("/ExternalQuarn/x"));
  scene::makeFolder("/Volumes/X9/ExternalQuarn/Quarn");
  for (const char* path : {"/Volumes/X9/MyQuarn/x", "/Volumes/X9/quarn/x", "/Volumes/X9/Quarn 1/x",
                           "/Volumes/X9/Quarn", "/Volumes/X9/Quarn/"})
    EXPECT_EQ(candidate(path), std::nullopt) << path;
}

TEST(StaleRootRetarget, aPathWithoutTheOldNameIsNotLookedUp) {
  scene::makeFolder("/Volumes/X9/ExternalQuarn/Data");
  Blinded files;
  const Platform platform = replacing({.files = &files});
  EXPECT_EQ(StaleRootRetarget::candidate(platform, Path("/Volumes/X9/ExternalQuarn/Data")), std::nullopt);
  EXPECT_EQ(files.asked, 0);
  StaleRootRetarget::candidate(platform, Path(stale));
  EXPECT_EQ(files.asked, 1);
}

std::vector<HealthIssue> deadLinks() {
  return DanglingDataLinkDetector::detect(hostPlatform());
}

Names sortedLocations(const std::vector<HealthIssue>& issues) {
  Names found = locations(issues);
  std::sort(found.begin(), found.end());
  return found;
}

HealthIssue dead(const std::string& location, const std::string& target,
                 const std::string& detail = withoutCopy) {
  return {.kind = HealthIssue::Kind::dangling,
          .location = Path(location),
          .target = Path(target),
          .detail = detail,
          .sizeBytes = 0};
}

TEST(DanglingDataLinkDetector, seesThreeLevelsAndNoMore) {
  scene::makeFolder(support + "/a/b/c/d");
  for (const char* at : {"/1", "/a/2", "/a/b/3", "/a/b/c/4", "/a/b/c/d/5"})
    scene::link(support + at, "/gone");
  EXPECT_EQ(deadLinks(), (std::vector{dead(support + "/1", "/gone"), dead(support + "/a/2", "/gone"),
                                      dead(support + "/a/b/3", "/gone")}));
}

TEST(DanglingDataLinkDetector, looksInFiveFoldersInTheirOrder) {
  const Names folders = {support + "/x", "/Users/me/Library/Logs/x", "/Users/me/Library/HTTPStorages/x",
                         "/Users/me/Library/WebKit/x", "/Users/me/Library/Saved Application State/x"};
  for (auto folder = folders.rbegin(); folder != folders.rend(); ++folder) scene::link(*folder, "/gone");
  for (const char* other : {"Caches", "Containers", "Preferences"})
    scene::link(std::string("/Users/me/Library/") + other + "/x", "/gone");
  EXPECT_EQ(locations(deadLinks()), folders);
}

TEST(DanglingDataLinkDetector, aHomeWithoutTheseFoldersHasNone) {
  doubles::FakePlaces places{Path("/Users/nobody")};
  EXPECT_TRUE(DanglingDataLinkDetector::detect(replacing({.places = &places})).empty());
}

TEST(DanglingDataLinkDetector, keepsTheOrderInWhichTheDiskGaveThem) {
  for (const char* name : {"c", "a", "d", "b", "e"}) scene::link(support + "/" + name, "/gone");
  EXPECT_EQ(locations(deadLinks()), inOrderOfDisk(support));
}

TEST(DanglingDataLinkDetector, notesOfBrowsersAreIgnored) {
  for (const char* name : {"SingletonLock", "Singleton", "Singletons/x", "RunningChromeVersion",
                           "singletonLock", "MySingleton", "RunningChrome"})
    scene::link(support + "/" + name, "/gone");
  EXPECT_EQ(sortedLocations(deadLinks()), (Names{support + "/MySingleton", support + "/RunningChrome",
                                                 support + "/Singletons/x", support + "/singletonLock"}));
}

TEST(DanglingDataLinkDetector, aRelativeTargetIsInTheFolderOfTheLink) {
  scene::link(support + "/Foo/near", "gone");
  scene::link(support + "/Bar/up", "../x/gone");
  scene::write(support + "/there", "x");
  scene::link(support + "/Foo/sound", "../there");
  std::map<std::string, std::string> targets;
  for (const HealthIssue& issue : deadLinks()) targets[issue.location.text()] = issue.target->text();
  EXPECT_EQ(targets, (std::map<std::string, std::string>{
                         {support + "/Foo/near", support + "/Foo/gone"},
                         {support + "/Bar/up", support + "/Bar/../x/gone"},
                     }));
}

TEST(DanglingDataLinkDetector, aLinkIntoTheFolderOfTheOldNameTellsItsRelocatedCopy) {
  scene::link(support + "/Foo", stale);
  EXPECT_EQ(deadLinks(), std::vector{dead(support + "/Foo", stale)});
  scene::write(renamed, "x");
  EXPECT_EQ(deadLinks(),
            std::vector{dead(support + "/Foo", stale,
                             "App-data symlink target is missing. Relocated copy found at "
                             "/Volumes/X9/ExternalQuarn/Data/Foo; `health repair` repoints it.")});
}

TEST(DanglingDataLinkDetector, aLinkThatWorksIsSoundAndNotEntered) {
  scene::link("/Volumes/X9/Data/dead", "/gone");
  scene::link(support + "/Foo", "/Volumes/X9/Data");
  scene::write(support + "/file", "x");
  EXPECT_TRUE(deadLinks().empty());
}

TEST(DanglingDataLinkDetector, linksThatLoopAreDead) {
  scene::link(support + "/self", "self");
  EXPECT_EQ(deadLinks(), std::vector{dead(support + "/self", support + "/self")});
}

TEST(DanglingDataLinkDetector, hiddenItemsAreNeitherSeenNorEntered) {
  scene::link(support + "/.hidden", "/gone");
  scene::link(support + "/.folder/x", "/gone");
  EXPECT_TRUE(deadLinks().empty());
}

TEST(DanglingDataLinkDetector, whatMayNotBeReadIsSkipped) {
  // One on either side of it, since the walk may come from either end.
  for (const char* folder : {"open", "closed", "open too"})
    scene::link(support + "/" + folder + "/x", "/gone");
  scene::link("/Users/me/Library/Logs/x", "/gone");
  std::filesystem::permissions(support + "/closed", std::filesystem::perms(0));
  EXPECT_EQ(child::failuresWithoutRights([] {
              EXPECT_EQ(sortedLocations(deadLinks()),
                        (Names{support + "/open too/x", support + "/open/x", "/Users/me/Library/Logs/x"}));
            }),
            "");
  Blinded files;
  files.withoutText = {support + "/closed/x", support + "/open too/x", "/Users/me/Library/Logs/x"};
  EXPECT_EQ(locations(DanglingDataLinkDetector::detect(replacing({.files = &files}))),
            Names{support + "/open/x"});
}

TEST(DanglingDataLinkDetector, oddNamesAreTakenAsTheyAre) {
  std::map<std::string, std::string> expected;
  for (const std::string& name : oddNames()) {
    scene::link(support + "/" + name + "/" + name, "/gone/" + name);
    expected[support + "/" + name + "/" + name] = "/gone/" + name;
  }
  std::map<std::string, std::string> found;
  for (const HealthIssue& issue : deadLinks()) found[issue.location.text()] = issue.target->text();
  EXPECT_EQ(found, expected);
}

TEST(DanglingDataLinkDetector, findsTenThousandLinks) {
  for (int i = 0; i < 10'000; ++i) scene::link(support + "/Foo/" + std::to_string(i), "/gone");
  EXPECT_EQ(deadLinks().size(), 10'000u);
}

const std::string preferences = "/Users/me/Library/Preferences";

HealthIssue unsafe(const std::string& location, const std::optional<Path>& target) {
  return {.kind = HealthIssue::Kind::unsafePrefsPlist,
          .location = Path(location),
          .target = target,
          .detail = "Library/Preferences plist is a symlink; cfprefsd will break it on next write.",
          .sizeBytes = 0};
}

std::vector<HealthIssue> unsafePlists(const Names& extraHomes = {}) {
  return UnsafePrefsPlistDetector::detect(hostPlatform(), paths(extraHomes));
}

TEST(UnsafePrefsPlistDetector, looksInTheSystemsTheUsersAndFurtherHomes) {
  scene::link("/Users/you/Library/Preferences/c.plist", "/t");
  scene::link(preferences + "/b.plist", "/t");
  scene::link("/Library/Preferences/a.plist", "/t");
  EXPECT_EQ(unsafePlists({"/Users/none", "/Users/you"}),
            (std::vector{unsafe("/Library/Preferences/a.plist", Path("/t")),
                         unsafe(preferences + "/b.plist", Path("/t")),
                         unsafe("/Users/you/Library/Preferences/c.plist", Path("/t"))}));
  EXPECT_EQ(unsafePlists().size(), 2u);
}

TEST(UnsafePrefsPlistDetector, aLinkThatWorksIsUnsafeToo) {
  scene::write("/Volumes/X9/a.plist", "x");
  scene::link(preferences + "/a.plist", "/Volumes/X9/a.plist");
  EXPECT_EQ(unsafePlists(), std::vector{unsafe(preferences + "/a.plist", Path("/Volumes/X9/a.plist"))});
}

TEST(UnsafePrefsPlistDetector, aRelativeTargetIsInTheCurrentFolder) {
  scene::link(preferences + "/a.plist", "../b.plist");
  doubles::FakePlaces places;
  places.current = Path("/Users/me/work");
  EXPECT_EQ(UnsafePrefsPlistDetector::detect(replacing({.places = &places}), {}),
            std::vector{unsafe(preferences + "/a.plist", Path("/Users/me/work/../b.plist"))});
}

TEST(UnsafePrefsPlistDetector, otherItemsAndSubfoldersAreNoFinding) {
  scene::write(preferences + "/real.plist", "x");
  for (const char* name : {"link", "a.PLIST", "a.plist.bak", ".plist", "ByHost/a.plist"})
    scene::link(preferences + "/" + name, "/t");
  EXPECT_TRUE(unsafePlists().empty());
}

TEST(UnsafePrefsPlistDetector, hiddenLinksCount) {
  scene::link(preferences + "/.GlobalPreferences.plist", "/t");
  EXPECT_EQ(locations(unsafePlists()), Names{preferences + "/.GlobalPreferences.plist"});
}

TEST(UnsafePrefsPlistDetector, aTextThatCannotBeReadLeavesTheFindingWithoutTarget) {
  for (const char* name : {"/a.plist", "/b.plist"}) scene::link(preferences + name, "/t");
  Blinded files;
  files.withoutAttributes = {preferences + "/a.plist"};
  files.withoutText = {preferences + "/b.plist"};
  EXPECT_EQ(UnsafePrefsPlistDetector::detect(replacing({.files = &files}), {}),
            std::vector{unsafe(preferences + "/b.plist", std::nullopt)});
}

TEST(UnsafePrefsPlistDetector, aFolderThatMayNotBeReadIsSkipped) {
  scene::link("/Library/Preferences/a.plist", "/t");
  scene::link(preferences + "/b.plist", "/t");
  std::filesystem::permissions("/Library/Preferences", std::filesystem::perms(0));
  EXPECT_EQ(child::failuresWithoutRights(
                [] { EXPECT_EQ(locations(unsafePlists()), Names{preferences + "/b.plist"}); }),
            "");
}

TEST(UnsafePrefsPlistDetector, keepsTheOrderOfTheDiskAndOddNames) {
  for (const std::string& name : oddNames()) scene::link(preferences + "/" + name + ".plist", "/t");
  EXPECT_EQ(locations(unsafePlists()), inOrderOfDisk(preferences));
}

const std::string containers = "/Users/me/Library/Containers";

HealthIssue external(const std::string& location, const std::string& target) {
  return {.kind = HealthIssue::Kind::sandboxExternalSymlink,
          .location = Path(location),
          .target = Path(target),
          .detail =
              "Sandbox-managed path symlinked to external volume. macOS sandbox blocks reads from "
              "/Volumes/, breaking sandboxed apps. Restore to internal disk.",
          .sizeBytes = 0};
}

std::vector<HealthIssue> sandboxed() {
  return SandboxExternalSymlinkDetector::detect(hostPlatform());
}

TEST(SandboxExternalSymlinkDetector, looksInThreeFoldersInTheirOrder) {
  const Names folders = {containers + "/com.foo", "/Users/me/Library/Group Containers/com.foo",
                         "/Users/me/Library/Application Scripts/com.foo"};
  for (auto folder = folders.rbegin(); folder != folders.rend(); ++folder)
    scene::link(*folder, "/Volumes/X9/Data");
  scene::link(support + "/com.foo", "/Volumes/X9/Data");
  EXPECT_EQ(sandboxed(),
            (std::vector{external(folders[0], "/Volumes/X9/Data"), external(folders[1], "/Volumes/X9/Data"),
                         external(folders[2], "/Volumes/X9/Data")}));
}

TEST(SandboxExternalSymlinkDetector, onlyTheBeginningOfTheTextCounts) {
  scene::link(containers + "/absent", "/Volumes/Unplugged/x");
  scene::link(containers + "/bent", "/Volumes/../Users/me");
  EXPECT_EQ(sandboxed().size(), 2u);
  for (const HealthIssue& issue : sandboxed())
    EXPECT_EQ(issue, issue.location.lastComponent() == "bent"
                         ? external(containers + "/bent", "/Volumes/../Users/me")
                         : external(containers + "/absent", "/Volumes/Unplugged/x"));
}

TEST(SandboxExternalSymlinkDetector, otherLinksAndItemsAreNoFinding) {
  scene::link(containers + "/home", "/Users/me/Data");
  scene::link(containers + "/relative", "../../../../Volumes/X9");
  scene::link(containers + "/volumes", "/Volumes");
  scene::link(containers + "/case", "/volumes/X9/x");
  scene::link(containers + "/.hidden", "/Volumes/X9/x");
  scene::link(containers + "/com.foo/Data", "/Volumes/X9/x");
  scene::write(containers + "/file", "/Volumes/X9/x");
  EXPECT_TRUE(sandboxed().empty());
}

TEST(SandboxExternalSymlinkDetector, whatCannotBeReadIsSkipped) {
  for (const char* name : {"a", "b", "c"}) scene::link(containers + "/" + name, "/Volumes/X9/x");
  scene::link("/Users/me/Library/Group Containers/d", "/Volumes/X9/x");
  Blinded files;
  files.withoutAttributes = {containers + "/a"};
  files.withoutText = {containers + "/b"};
  EXPECT_EQ(locations(SandboxExternalSymlinkDetector::detect(replacing({.files = &files}))),
            (Names{containers + "/c", "/Users/me/Library/Group Containers/d"}));
  std::filesystem::permissions(containers, std::filesystem::perms(0));
  EXPECT_EQ(child::failuresWithoutRights(
                [] { EXPECT_EQ(locations(sandboxed()), Names{"/Users/me/Library/Group Containers/d"}); }),
            "");
}

TEST(SandboxExternalSymlinkDetector, keepsTheOrderOfTheDiskAndOddNames) {
  for (const std::string& name : oddNames()) scene::link(containers + "/x" + name, "/Volumes/X9/" + name);
  const auto found = sandboxed();
  EXPECT_EQ(locations(found), inOrderOfDisk(containers));
  for (const HealthIssue& issue : found)
    EXPECT_EQ(issue.target->text(), "/Volumes/X9/" + issue.location.lastComponent().substr(1));
}

}  // namespace
}  // namespace quarn
