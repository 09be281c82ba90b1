#include <filesystem>
#include <gtest/gtest.h>

#include "QuarnCore/dedupe/AppDedupeRules.h"
#include "tests/dedupe/Deduping.h"

namespace quarn {
namespace {

using namespace deduping;
using AppDedupeRules::score;
using Kind = AppDedupeItemKind;
namespace fs = std::filesystem;

AppDedupeItem itemAt(const std::string& path, Kind kind, bool isInLinkedFolder = false) {
  AppDedupeItem item;
  item.path = path;
  item.kind = kind;
  item.insideSymlinkedFolder = isInLinkedFolder;
  return item;
}

std::optional<Kind> kindOf(const std::string& bundle) {
  const auto item = AppDedupeRules::describe(hostPlatform(), Path(bundle));
  return item ? std::optional(item->kind) : std::nullopt;
}

TEST(DedupeRules, anItemIsScoredByWhatItIsAndWhereItIs) {
  EXPECT_EQ(score(itemAt(app, Kind::realApp)), 110);
  EXPECT_EQ(score(itemAt(own + "/Foo.app", Kind::realApp)), 100);
  EXPECT_EQ(score(itemAt(launcher, Kind::quarnLauncher)), 60);
  EXPECT_EQ(score(itemAt(own + "/Foo.app", Kind::quarnLauncher)), 50);
  EXPECT_EQ(score(itemAt(app, Kind::symlink)), 10);
  EXPECT_EQ(score(itemAt(own + "/Suite/Foo.app", Kind::realApp, true)), -40);
  EXPECT_EQ(score(itemAt("/Applications/Suite/Foo.app", Kind::realApp, true)), -30);
  EXPECT_EQ(score(itemAt("/Applications/Suite/Foo.app", Kind::quarnLauncher, true)), 20);
  EXPECT_EQ(score(itemAt("/Volumes/X9/Foo.app", Kind::realApp)), 70);
  EXPECT_EQ(score(itemAt("/Volumes/X9/Foo.app", Kind::symlink, true)), -70);
  EXPECT_EQ(score(itemAt("/ApplicationsToo/Foo.app", Kind::realApp)), 100);
}

TEST(DedupeRules, aLauncherWithARelativeTargetIsNoDuplicate) {
  AppDedupeItem relative = itemAt(launcher, Kind::quarnLauncher);
  relative.targetPath = "Foo.app";
  EXPECT_FALSE(AppDedupeRules::isDuplicate(hostPlatform(), relative, itemAt(app, Kind::realApp)));
  relative.targetPath = "/nowhere/Foo.app";
  EXPECT_TRUE(AppDedupeRules::isDuplicate(hostPlatform(), relative, itemAt(app, Kind::realApp)));
}

TEST(DedupeRules, aLauncherIsKnownByItsTargetItsExecutableOrItsIdentifier) {
  scene::makeApp(app);
  EXPECT_EQ(kindOf(app), Kind::realApp);
  scene::write(app + targetFile, " \n");
  EXPECT_EQ(kindOf(app), Kind::realApp) << "a target file without a text names nothing";
  scene::write(app + targetFile, "x");
  EXPECT_EQ(kindOf(app), Kind::quarnLauncher);
  scene::makeApp("/Applications/E.app", {.executable = "ExternalAppLauncher"});
  EXPECT_EQ(kindOf("/Applications/E.app"), Kind::quarnLauncher);
  scene::makeApp("/Applications/e.app", {.executable = "externalapplauncher"});
  EXPECT_EQ(kindOf("/Applications/e.app"), Kind::realApp);
  scene::makeApp("/Applications/I.app", {.identifier = "a.externallauncher"});
  EXPECT_EQ(kindOf("/Applications/I.app"), Kind::quarnLauncher);
  scene::makeApp("/Applications/i.app", {.identifier = "a.externallauncher.b"});
  EXPECT_EQ(kindOf("/Applications/i.app"), Kind::realApp);
}

TEST(DedupeRules, aLinkIsToldByWhatItLeadsTo) {
  scene::makeApp(copy);
  scene::link(app, copy);
  EXPECT_EQ(kindOf(app), Kind::symlink);
  scene::write(copy + targetFile, "/somewhere");
  EXPECT_EQ(kindOf(app), Kind::quarnLauncher);
  fs::remove_all(copy);
  EXPECT_EQ(kindOf(app), std::nullopt);
}

TEST(DedupeRules, whatIsNoBundleIsNoItem) {
  scene::write("/Applications/File.app", "text");
  scene::makeFolder("/Applications/Folder.app/Contents/Info.plist");
  EXPECT_EQ(kindOf("/Applications/File.app"), std::nullopt);
  EXPECT_EQ(kindOf("/Applications/Folder.app"), std::nullopt);
  EXPECT_EQ(kindOf("/Applications/None.app"), std::nullopt);
}

TEST(DedupeRules, aLinkedFolderCountsUpToAFolderForApplications) {
  const auto isInLinkedFolder = [](const std::string& path) {
    const auto item = AppDedupeRules::describe(hostPlatform(), Path(path));
    EXPECT_TRUE(item) << path;
    return item && item->insideSymlinkedFolder;
  };
  scene::makeApp("/Applications/Suite/More/Foo.app");
  EXPECT_FALSE(isInLinkedFolder("/Applications/Suite/More/Foo.app"));
  scene::link("/Applications/Linked", "Suite");
  EXPECT_TRUE(isInLinkedFolder("/Applications/Linked/More/Foo.app"));
  EXPECT_FALSE(isInLinkedFolder("/Applications/Linked/../Suite/More/Foo.app"));
  scene::link("/Volumes/X9/All", "/Applications");
  EXPECT_TRUE(isInLinkedFolder("/Volumes/X9/All/Suite/More/Foo.app"));
  scene::makeApp("/Volumes/X9/Foo.app");
  EXPECT_FALSE(isInLinkedFolder("/Volumes/X9/Foo.app"));
  scene::makeApp("/Volumes/X9/me/Applications/Foo.app");
  fs::rename("/Users/me", "/Users/me before");
  scene::link("/Users/me", "/Volumes/X9/me");
  EXPECT_FALSE(isInLinkedFolder(own + "/Foo.app")) << "what is above the folder for applications";
  fs::remove("/Users/me");
  fs::rename("/Users/me before", "/Users/me");
}

}  // namespace
}  // namespace quarn
