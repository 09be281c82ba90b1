#include <algorithm>
#include <filesystem>

#include "Platform/HostPlatform.h"
#include "QuarnCore/discovery/AppBundleScanRoots.h"
#include "tests/support/Child.h"
#include "tests/support/Scene.h"

namespace quarn {
namespace {

using List = std::vector<std::string>;

List sorted(const std::vector<Path>& paths) {
  List list;
  for (const Path& path : paths) list.push_back(path.text());
  std::sort(list.begin(), list.end());
  return list;
}

List walk(const std::string& root, int depth = 0, int maxDepth = AppBundleEnumerator::defaultMaxDepth) {
  std::vector<Path> bundles;
  AppBundleEnumerator::walk(hostPlatform(), Path(root), depth, maxDepth, bundles);
  return sorted(bundles);
}

TEST(AppBundleEnumerator, looksTwoFoldersDeepAndNoDeeper) {
  scene::makeFolder("/Applications/Zero.app");
  scene::makeFolder("/Applications/Some Folder/One.app");
  scene::makeFolder("/Applications/Some Folder/Sub/Two.app");
  scene::makeFolder("/Applications/Some Folder/Sub/Deeper/Three.app");
  EXPECT_EQ(AppBundleEnumerator::defaultMaxDepth, 2);
  EXPECT_EQ(walk("/Applications"), (List{"/Applications/Some Folder/One.app",
                                         "/Applications/Some Folder/Sub/Two.app", "/Applications/Zero.app"}));
}

TEST(AppBundleEnumerator, theDepthIsThatOfTheCaller) {
  scene::makeFolder("/Applications/Zero.app");
  scene::makeFolder("/Applications/Folder/One.app");
  EXPECT_EQ(walk("/Applications", 0, 0), (List{"/Applications/Zero.app"}));
  EXPECT_EQ(walk("/Applications", 2, 2), (List{"/Applications/Zero.app"}));
  EXPECT_EQ(walk("/Applications", 1, 2), (List{"/Applications/Folder/One.app", "/Applications/Zero.app"}));
  EXPECT_EQ(walk("/Applications", 3, 2), List{});
}

TEST(AppBundleEnumerator, neverLooksInsideABundle) {
  scene::makeFolder("/Applications/Outer.app/Inner.app");
  EXPECT_EQ(walk("/Applications"), (List{"/Applications/Outer.app"}));
}

TEST(AppBundleEnumerator, theExtensionIsExactlyApp) {
  for (const char* name : {"A.APP", "B.apps", "C.app ", "Dapp", ".app", "E.app.bak", "F.App"}) {
    scene::makeFolder(std::string("/Applications/") + name);
  }
  EXPECT_EQ(walk("/Applications", 0, 0), List{});
}

TEST(AppBundleEnumerator, aFolderWithAnotherLetterCaseIsLookedInto) {
  scene::makeFolder("/Applications/A.APP/Inner.app");
  EXPECT_EQ(walk("/Applications"), (List{"/Applications/A.APP/Inner.app"}));
}

TEST(AppBundleEnumerator, hiddenNamesAreLeftOut) {
  scene::makeFolder("/Applications/.Hidden.app");
  scene::makeFolder("/Applications/.folder/Inside.app");
  scene::makeFolder("/Applications/Seen.app");
  EXPECT_EQ(walk("/Applications"), (List{"/Applications/Seen.app"}));
}

TEST(AppBundleEnumerator, linksAndFilesWithTheExtensionCount) {
  scene::link("/Applications/Dangling.app", "/nowhere");
  scene::link("/Applications/Moved.app", "/Volumes/X9");
  scene::write("/Applications/File.app", "no folder");
  EXPECT_EQ(walk("/Applications"),
            (List{"/Applications/Dangling.app", "/Applications/File.app", "/Applications/Moved.app"}));
}

TEST(AppBundleEnumerator, aRootThatIsALinkShowsItsChildrenUnderItsOwnName) {
  scene::makeFolder("/Volumes/X9/Real/A.app");
  scene::makeFolder("/Volumes/X9/Real/Sub/B.app");
  scene::link("/Users/me/absolute", "/Volumes/X9/Real");
  EXPECT_EQ(walk("/Users/me/absolute"), (List{"/Users/me/absolute/A.app", "/Users/me/absolute/Sub/B.app"}));
}

TEST(AppBundleEnumerator, aRelativeLinkBeginsAtItsOwnFolder) {
  scene::makeFolder("/Users/me/Real/A.app");
  scene::link("/Users/me/Folder/relative", "../Real");
  EXPECT_EQ(walk("/Users/me/Folder/relative"), (List{"/Users/me/Folder/relative/A.app"}));
}

TEST(AppBundleEnumerator, aLinkToAFolderBelowTheRootIsLookedIntoUnderItsName) {
  scene::makeFolder("/Volumes/X9/Suite/A.app");
  scene::link("/Applications/Suite", "/Volumes/X9/Suite");
  EXPECT_EQ(walk("/Applications"), (List{"/Applications/Suite/A.app"}));
}

TEST(AppBundleEnumerator, linksThatLoopEndAtTheDepth) {
  scene::link("/Applications/Loop", "/Applications");
  scene::link("/Applications/Self", "Self");
  scene::makeFolder("/Applications/A.app");
  EXPECT_EQ(walk("/Applications"),
            (List{"/Applications/A.app", "/Applications/Loop/A.app", "/Applications/Loop/Loop/A.app"}));
}

TEST(AppBundleEnumerator, whatCannotBeListedIsPassedOver) {
  scene::write("/Users/me/file", "x");
  scene::link("/Users/me/dangling", "/nowhere");
  scene::link("/Users/me/to file", "/Users/me/file");
  for (const char* root : {"/nowhere", "/Users/me/file", "/Users/me/dangling", "/Users/me/to file"}) {
    EXPECT_EQ(walk(root), List{}) << root;
  }
}

TEST(AppBundleEnumerator, aFolderThatMayNotBeReadIsPassedOver) {
  scene::makeFolder("/Applications/Closed/A.app");
  scene::makeFolder("/Applications/B.app");
  std::filesystem::permissions("/Applications/Closed", std::filesystem::perms::none);
  EXPECT_EQ(
      child::failuresWithoutRights([] { EXPECT_EQ(walk("/Applications"), (List{"/Applications/B.app"})); }),
      "");
}

TEST(AppBundleEnumerator, namesOfAnyCharactersAreFoundAsTheyAre) {
  const List names = {"/Applications/A \"b\" 'c'.app", "/Applications/Line\nfeed\ttab.app",
                      "/Applications/\u00e9.app", "/Applications/e\u0301.app", "/Applications/🚀.app"};
  for (const std::string& name : names) scene::makeFolder(name);
  List expected = names;
  std::sort(expected.begin(), expected.end());
  EXPECT_EQ(walk("/Applications"), expected);
}

TEST(AppBundleScanRoots, areTheSharedFolderAndThatOfTheUser) {
  const auto roots = AppBundleScanRoots::standardApplicationRoots(hostPlatform(), false);
  EXPECT_EQ(roots, (std::vector<Path>{Path("/Applications"), Path("/Users/me/Applications")}));
}

TEST(AppBundleScanRoots, theSystemsFoldersComeInBetweenIfAskedFor) {
  const auto roots = AppBundleScanRoots::standardApplicationRoots(hostPlatform(), true);
  EXPECT_EQ(roots, (std::vector<Path>{Path("/Applications"), Path("/Applications/Utilities"),
                                      Path("/System/Applications"), Path("/Users/me/Applications")}));
}

TEST(AppBundleScanRoots, theUsersFolderIsLeftOutWhereItDoesNotExistAndNoOther) {
  std::filesystem::remove("/Users/me/Applications");
  std::filesystem::remove("/Applications/Utilities");
  const auto roots = AppBundleScanRoots::standardApplicationRoots(hostPlatform(), true);
  EXPECT_EQ(roots, (std::vector<Path>{Path("/Applications"), Path("/Applications/Utilities"),
                                      Path("/System/Applications")}));
}

TEST(AppBundleScanRoots, supportFoldersThatHoldABundleAreSupplemental) {
  const std::string support = "/Users/me/Library/Application Support/";
  scene::makeFolder(support + "Direct/Tool.app");
  scene::makeFolder(support + "Deep/a/b/Tool.app");
  scene::makeFolder(support + "Too Deep/a/b/c/Tool.app");
  scene::makeFolder(support + "None/data");
  scene::makeFolder(support + ".hidden/Tool.app");
  scene::link(support + "Linked", support + "Direct");
  scene::write(support + "file", "x");
  EXPECT_EQ(sorted(AppBundleScanRoots::supplementalApplicationSupportRoots(hostPlatform(), 2)),
            (List{support + "Deep", support + "Direct"}));
  EXPECT_EQ(sorted(AppBundleScanRoots::supplementalApplicationSupportRoots(hostPlatform(), 0)),
            (List{support + "Direct"}));
}

TEST(AppBundleScanRoots, withoutASupportFolderNothingIsSupplemental) {
  std::filesystem::remove_all("/Users/me/Library/Application Support");
  EXPECT_TRUE(AppBundleScanRoots::supplementalApplicationSupportRoots(hostPlatform(), 2).empty());
}

}  // namespace
}  // namespace quarn
