#include <filesystem>
#include <gtest/gtest.h>

#include "QuarnCore/foundation/SizeCalculator.h"
#include "tests/dedupe/Deduping.h"
#include "tests/support/Doubles.h"
#include "tests/support/Replacing.h"

namespace quarn {
namespace {

using namespace deduping;
namespace fs = std::filesystem;

TEST(DedupePlan, aLauncherBesideTheRealApplicationThatItOpensIsADuplicate) {
  makeDuplicate();
  const auto plan = planned();
  EXPECT_EQ(told(plan), duplicateTold);
  ASSERT_EQ(plan.groups.size(), 1u);
  EXPECT_EQ(plan.groups[0].reason,
            "Top-level launcher duplicates a real local app with the same bundle identifier.");
  EXPECT_EQ(plan.groups[0].keep,
            (AppDedupeItem{.path = app,
                           .displayName = "Foo",
                           .bundleIdentifier = "com.example.foo",
                           .effectiveBundleIdentifier = "com.example.foo",
                           .kind = AppDedupeItemKind::realApp,
                           .targetPath = std::nullopt,
                           .insideSymlinkedFolder = false,
                           .sizeBytes = SizeCalculator::size(hostPlatform(), Path(app))}));
  EXPECT_GT(plan.groups[0].keep.sizeBytes, 40'000);
  EXPECT_EQ(plan.groups[0].remove, std::vector{plan.groups[0].items[0]});
  EXPECT_EQ(plan.groups[0].items[0],
            (AppDedupeItem{.path = launcher,
                           .displayName = "Launcher",
                           .bundleIdentifier = "com.example.foo.externallauncher",
                           .effectiveBundleIdentifier = "com.example.foo",
                           .kind = AppDedupeItemKind::quarnLauncher,
                           .targetPath = app,
                           .insideSymlinkedFolder = false,
                           .sizeBytes = SizeCalculator::size(hostPlatform(), Path(launcher))}));
  EXPECT_EQ(plan.groups[0].items[1], plan.groups[0].keep);
}

TEST(DedupePlan, aLauncherOfAnotherApplicationThatExistsStays) {
  scene::makeApp(app);
  for (const std::string& target : {copy, std::string("/"), app + "/", std::string("/Volumes/X9")}) {
    scene::makeApp(copy);
    scene::makeLauncher(launcher, target);
    EXPECT_EQ(told(planned()), Lines{}) << target;
  }
  scene::makeLauncher("/Applications/Second.app", app);
  const auto plan = planned();
  EXPECT_EQ(told(plan), (Lines{"Foo (com.example.foo)", "keep " + app, "remove /Applications/Second.app"}));
  EXPECT_EQ(plan.groups[0].items.size(), 3u) << "it is told as one of the group";
}

TEST(DedupePlan, aLauncherWhoseTargetIsMissingOrUnknownIsADuplicate) {
  scene::makeApp(app);
  for (const std::string& target :
       {copy, std::string(), std::string(" \n\t"), std::string("/Foo.app"), std::string("\xFF\xFE"),
        app + "\n" + app, "/" + std::string(70'000, 'x'), "/Volumes/X9" + std::string(1, '\0')}) {
    scene::makeLauncher(launcher, "");
    scene::write(launcher + targetFile, target);
    EXPECT_EQ(told(planned()), duplicateTold) << target.substr(0, 60);
  }
  fs::remove(launcher + targetFile);
  EXPECT_EQ(told(planned()), duplicateTold);
  EXPECT_EQ(planned().groups[0].remove[0].targetPath, std::nullopt);
}

TEST(DedupePlan, theTargetIsTrimmedAndMayHaveAMark) {
  scene::makeApp(app);
  scene::makeLauncher(launcher, "");
  scene::write(launcher + targetFile, "\xEF\xBB\xBF \r\n" + app + "\t\r\n");
  ASSERT_EQ(told(planned()), duplicateTold);
  EXPECT_EQ(planned().groups[0].remove[0].targetPath, app);
}

TEST(DedupePlan, aRealApplicationInALinkedFolderIsNoReasonToRemoveALauncher) {
  scene::makeApp("/Volumes/X9/Suite/Foo.app");
  scene::link("/Applications/Suite", "/Volumes/X9/Suite");
  scene::makeLauncher(launcher, "/Applications/Suite/Foo.app");
  EXPECT_EQ(told(planned()), Lines{});
  fs::remove_all("/Applications/Foo Launcher.app");
  scene::makeLauncher(own + "/Foo.app", "/nowhere");
  EXPECT_EQ(told(planned()), Lines{});
}

TEST(DedupePlan, twoRealApplicationsAreNoGroup) {
  scene::makeApp(app);
  scene::makeApp(own + "/Foo.app");
  scene::makeApp("/Applications/Other.app");
  EXPECT_EQ(told(planned()), Lines{});
}

TEST(DedupePlan, twoLaunchersAreNoGroup) {
  scene::makeLauncher(app, copy);
  scene::makeLauncher(launcher, app);
  EXPECT_EQ(told(planned()), Lines{});
}

TEST(DedupePlan, aLinkIsNeverADuplicateWhateverItLeadsTo) {
  scene::makeApp(app);
  scene::makeApp(copy);
  scene::makeLauncher("/Volumes/X9/Launcher.app", app);
  scene::link("/Applications/Copy.app", copy);
  scene::link("/Applications/Same.app", app);
  scene::link("/Applications/Launcher.app", "/Volumes/X9/Launcher.app");
  scene::link("/Applications/Dangling.app", "/nowhere");
  EXPECT_EQ(told(planned()), Lines{});
}

TEST(DedupePlan, anApplicationThatIsALinkIsNoReasonToRemoveALauncher) {
  scene::makeApp(copy);
  scene::link(app, copy);
  scene::makeLauncher(launcher, app);
  EXPECT_EQ(told(planned()), Lines{});
}

TEST(DedupePlan, identifiersAreComparedWithoutTheSuffixOfLaunchers) {
  scene::makeApp(app, {.identifier = "com.externallauncher.example.foo"});
  scene::makeApp(launcher,
                 {.identifier = "com.example.externallauncher.foo.externallauncher", .displayName = "L"});
  scene::makeApp("/Applications/Upper.app", {.identifier = "com.example.Foo.externallauncher"});
  const auto plan = planned();
  EXPECT_EQ(told(plan), duplicateTold);
  EXPECT_EQ(plan.groups[0].remove[0].bundleIdentifier, "com.example.externallauncher.foo.externallauncher");
  EXPECT_EQ(plan.groups[0].keep.bundleIdentifier, "com.externallauncher.example.foo");
}

TEST(DedupePlan, bundlesWithoutAnIdentifierTakeNoPart) {
  const std::string begin = "<plist><dict><key>CFBundleExecutable</key><string>ExternalAppLauncher</string>";
  for (const std::string& text :
       {begin + "</dict></plist>", begin + "<key>CFBundleIdentifier</key><string></string></dict></plist>",
        begin + "<key>CFBundleIdentifier</key><integer>7</integer></dict></plist>",
        std::string("<plist><array><string>CFBundleIdentifier</string></array></plist>"),
        begin.substr(0, begin.size() / 2), std::string("bplist00\x01\x02"), std::string()}) {
    makeWithPlist("/Applications/A.app", text);
    makeWithPlist("/Applications/B.app", text);
    scene::makeApp("/Applications/C.app", {.identifier = ""});
    EXPECT_EQ(told(planned()), Lines{}) << text;
  }
  makeDuplicate();
  EXPECT_EQ(told(planned()), duplicateTold);
}

TEST(DedupePlan, anEmptyEffectiveIdentifierHasNoRealApplication) {
  scene::makeApp(app, {.identifier = ".externallauncher"});
  scene::makeApp(launcher, {.identifier = ".externallauncher.externallauncher"});
  EXPECT_EQ(told(planned()), Lines{});
}

TEST(DedupePlan, aGroupIsNamedAfterTheApplicationThatStays) {
  makeDuplicate();
  const auto name = [] { return planned().groups.at(0).displayName; };
  scene::makeApp(app, {.displayName = "Shown", .name = "Named"});
  EXPECT_EQ(name(), "Shown");
  scene::makeApp(app, {.name = "Named"});
  EXPECT_EQ(name(), "Named");
  makeWithPlist(app,
                "<plist><dict><key>CFBundleIdentifier</key><string>com.example.foo</string>"
                "<key>CFBundleDisplayName</key><string></string>"
                "<key>CFBundleName</key><integer>3</integer></dict></plist>");
  EXPECT_EQ(name(), "Foo");
}

TEST(DedupePlan, bundlesAreFoundTwoFoldersDeepAndNotInsideOthers) {
  scene::makeApp(app);
  scene::makeLauncher(own + "/1/2/Deep.app", app);
  scene::makeLauncher(own + "/1/2/3/Deeper.app", app);
  scene::makeLauncher(app + "/Contents/Inner.app", app);
  scene::makeLauncher(own + "/.Hidden.app", app);
  scene::makeLauncher(own + "/Upper.APP", app);
  EXPECT_EQ(told(planned()),
            (Lines{"Foo (com.example.foo)", "keep " + app, "remove " + own + "/1/2/Deep.app"}));
}

TEST(DedupePlan, theFirstByPathOfSeveralRealApplicationsStays) {
  for (const std::string name : {"Foo 3.app", "Foo 2.app", "Foo 4.app"})
    scene::makeApp("/Applications/" + name);
  scene::makeApp(own + "/A.app");
  scene::makeLauncher("/Applications/Z.app", "/nowhere");
  scene::makeLauncher("/Applications/A.app", "/Applications/Foo 2.app");
  EXPECT_EQ(told(planned()), (Lines{"Foo 2 (com.example.foo)", "keep /Applications/Foo 2.app",
                                    "remove /Applications/A.app", "remove /Applications/Z.app"}));
}

TEST(DedupePlan, groupsAreInTheOrderOfTheirNamesAsTexts) {
  int number = 0;
  for (const std::string name : {"B", "Z", "a", "b", "e\u0301", "\u00E9\u00E9"}) {
    // The order of the identifiers is the other way round.
    const std::string identifier = "com.example." + std::to_string(9 - number++);
    scene::makeApp("/Applications/real " + name + ".app", {.identifier = identifier, .displayName = name});
    scene::makeApp("/Applications/" + name + ".app", {.identifier = identifier + ".externallauncher"});
  }
  std::vector<std::string> names;
  for (const auto& group : planned().groups) names.push_back(group.displayName);
  EXPECT_EQ(names, (std::vector<std::string>{"B", "Z", "a", "b", "e\u0301", "\u00E9\u00E9"}));
}

TEST(DedupePlan, whatGoesIsCountedOverAllGroups) {
  makeDuplicate();
  scene::makeApp("/Applications/Bar.app", {.identifier = "bar"});
  scene::makeApp(own + "/Bar.app", {.identifier = "bar.externallauncher"}, 200'000);
  const auto plan = planned();
  ASSERT_EQ(plan.removableItems().size(), 2u);
  EXPECT_EQ(plan.removableItems()[0].path, own + "/Bar.app");
  EXPECT_EQ(plan.removableItems()[1].path, launcher);
  EXPECT_EQ(plan.removableBytes(), SizeCalculator::size(hostPlatform(), Path(own + "/Bar.app")) +
                                       SizeCalculator::size(hostPlatform(), Path(launcher)));
  EXPECT_EQ(AppDedupePlan{}.removableBytes(), 0);
}

TEST(DedupePlan, foldersThatDontExistAreSkippedAndTheTimeIsThatOfTheClock) {
  doubles::FakeClock clock;
  clock.moment = Moment(std::chrono::seconds(1'700'000'000));
  makeDuplicate();
  const auto platform = replacing({.clock = &clock});
  const auto plan =
      AppDedupeService::plan(platform, {Path("/nowhere"), Path("/Applications"), Path("/Applications")});
  EXPECT_EQ(told(plan), duplicateTold);
  EXPECT_EQ(plan.scannedAt, clock.moment);
  EXPECT_EQ(AppDedupeService::plan(platform, {}), (AppDedupePlan{.groups = {}, .scannedAt = clock.moment}));
}

TEST(DedupePlan, aFolderForApplicationsThatIsALinkHoldsNoLocalApplications) {
  fs::remove_all(own);
  scene::makeApp("/Volumes/X9/Own/Foo.app");
  scene::makeLauncher("/Volumes/X9/Own/Launcher.app", "/nowhere");
  scene::link(own, "/Volumes/X9/Own");
  EXPECT_EQ(told(planned()), Lines{});
  scene::makeApp(app);
  EXPECT_EQ(told(planned()),
            (Lines{"Foo (com.example.foo)", "keep " + app, "remove " + own + "/Launcher.app"}));
}

TEST(DedupePlan, aBundleInALinkedFolderIsFoundByBothItsPaths) {
  scene::makeApp(app);
  scene::makeLauncher("/Applications/Tools/L.app", app);
  scene::link("/Applications/Linked", "Tools");
  const auto plan = planned();
  EXPECT_EQ(told(plan), (Lines{"Foo (com.example.foo)", "keep " + app, "remove /Applications/Linked/L.app",
                               "remove /Applications/Tools/L.app"}));
  EXPECT_TRUE(plan.groups[0].remove[0].insideSymlinkedFolder);
  EXPECT_FALSE(plan.groups[0].remove[1].insideSymlinkedFolder);
}

}  // namespace
}  // namespace quarn
