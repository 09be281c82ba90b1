#include <filesystem>

#include "Platform/HostPlatform.h"
#include "QuarnCore/discovery/AppScanner.h"
#include "tests/support/Child.h"
#include "tests/support/Scene.h"

namespace quarn {
namespace {

const std::string launcher = "/Applications/Foo.app";
const std::string moved = "/Volumes/X9/ExternalQuarn/Apps/Foo.app";
const std::string targetFile = launcher + "/Contents/Resources/ExternalAppTarget.txt";

std::optional<AppEntry> entry() {
  return AppScanner::metadataEntry(hostPlatform(), Path(launcher));
}

std::optional<std::string> target() {
  const auto found = AppScanner::launcherShimTarget(hostPlatform(), Path(launcher));
  return found ? std::optional(found->text()) : std::nullopt;
}

std::optional<std::string> targetFor(const std::string& text) {
  scene::write(targetFile, text);
  return target();
}

TEST(Launcher, isToldWithTheNameAndVersionOfItsTargetAndNoneOfItsFlags) {
  scene::makeApp(moved, {.identifier = "com.example.real", .displayName = "Real", .version = "9.1"});
  scene::write(moved + "/Contents/_MASReceipt/receipt", "r");
  scene::makeFolder(moved + "/Contents/Library/LoginItems/x");
  scene::makeFolder(moved + "/Contents/Library/SystemExtensions/x");
  scene::makeLauncher(launcher, moved);
  const auto found = entry();
  ASSERT_TRUE(found);
  EXPECT_EQ(found->name, "Real");
  EXPECT_EQ(found->version, "9.1");
  EXPECT_EQ(found->bundleIdentifier, "com.example.real");
  EXPECT_EQ(found->id, "com.example.real");
  EXPECT_EQ(found->bundlePath, Path(launcher));
  EXPECT_TRUE(found->isAlreadySymlinked);
  EXPECT_FALSE(found->isMacAppStore);
  EXPECT_FALSE(found->hasLoginItems);
  EXPECT_FALSE(found->hasSystemExtension);
}

TEST(Launcher, showsFlagsOfItsOwn) {
  scene::makeApp(moved);
  scene::makeLauncher(launcher, moved);
  scene::makeFolder(launcher + "/Contents/Library/LoginItems/x");
  EXPECT_TRUE(entry()->hasLoginItems);
}

TEST(Launcher, whoseTargetNamesNothingIsNamedAfterItself) {
  scene::makeFolder("/Volumes/X9/Target.app");
  scene::makeLauncher(launcher, "/Volumes/X9/Target.app");
  const auto found = entry();
  ASSERT_TRUE(found);
  EXPECT_EQ(found->name, "Foo");
  EXPECT_EQ(found->id, launcher);
  EXPECT_EQ(found->version, std::nullopt);
}

TEST(Launcher, dataIsThatOfTheTargetsNames) {
  scene::makeApp(moved, {.identifier = "com.example.real", .displayName = "Real", .executable = "RealTool"});
  scene::makeLauncher(launcher, moved);
  scene::makeFolder("/Users/me/Library/Caches/com.example.real");
  scene::makeFolder("/Users/me/Library/Logs/Real");
  scene::makeFolder("/Users/me/.realtool");
  scene::makeFolder("/Users/me/.externalapplauncher");
  EXPECT_EQ(entry()->dataPaths,
            (std::vector<Path>{Path("/Users/me/Library/Caches/com.example.real"),
                               Path("/Users/me/Library/Logs/Real"), Path("/Users/me/.realtool")}));
}

TEST(Launcher, whoseTargetIsGoneIsNoApplication) {
  scene::makeLauncher(launcher, moved);
  EXPECT_EQ(entry(), std::nullopt);
  EXPECT_TRUE(AppScanner::discoverMetadata(hostPlatform()).empty());
}

TEST(Launcher, isKnownByItsTargetFileAlone) {
  scene::makeApp(launcher, {.identifier = "com.example.any", .executable = "Any"});
  ASSERT_TRUE(entry());
  scene::write(targetFile, "/nowhere");
  EXPECT_EQ(entry(), std::nullopt);
}

TEST(Launcher, isKnownByItsExecutableAlone) {
  scene::makeApp(launcher, {.identifier = "com.example.any", .executable = "ExternalAppLauncher"});
  EXPECT_EQ(entry(), std::nullopt);
}

TEST(Launcher, isKnownByTheEndingOfItsIdentifierAlone) {
  scene::makeApp(launcher, {.identifier = "com.example.any.externallauncher", .executable = "Any"});
  EXPECT_EQ(entry(), std::nullopt);
}

TEST(Launcher, marksThatAreAlmostRightAreNone) {
  scene::makeApp(launcher, {.identifier = "com.externallauncher.any", .executable = "externalapplauncher"});
  ASSERT_TRUE(entry());
  EXPECT_FALSE(entry()->isAlreadySymlinked);
}

TEST(Launcher, theEndingOfAnIdentifierBeginsWithAPoint) {
  scene::makeApp(launcher, {.identifier = "com.example.anyexternallauncher", .executable = "Any"});
  ASSERT_TRUE(entry());
  EXPECT_FALSE(entry()->isAlreadySymlinked);
}

TEST(Launcher, theTargetIsTheTrimmedTextStandardized) {
  scene::makeApp(moved);
  EXPECT_EQ(targetFor(moved), moved);
  EXPECT_EQ(targetFor(" \t\r\n" + moved + " \n\n"), moved);
  EXPECT_EQ(targetFor(moved + "/"), moved);
  EXPECT_EQ(targetFor("/Volumes//X9/./ExternalQuarn/Apps/Foo.app"), moved);
  EXPECT_EQ(targetFor("\xEF\xBB\xBF" + moved), moved);
}

TEST(Launcher, aTargetThroughALinkKeepsTheLinksName) {
  scene::makeApp(moved);
  scene::link("/Users/me/Alias.app", moved);
  EXPECT_EQ(targetFor("/Users/me/Alias.app"), "/Users/me/Alias.app");
}

TEST(Launcher, aTextThatNamesNothingThatExistsIsNoTarget) {
  scene::link("/Users/me/Dangling.app", "/nowhere");
  for (const std::string text : {"", " \n\t ", "/nowhere", "/Users/me/Dangling.app", "~/Applications"}) {
    EXPECT_EQ(targetFor(text), std::nullopt) << text;
  }
}

TEST(Launcher, aTargetFileThatIsNoTextIsNoTarget) {
  scene::makeFolder("/Volumes/X9/\xFF");
  EXPECT_EQ(targetFor("/Volumes/X9/\xFF"), std::nullopt);
}

TEST(Launcher, withoutATargetFileThereIsNoTarget) {
  EXPECT_EQ(target(), std::nullopt);
  scene::makeFolder(targetFile);
  EXPECT_EQ(target(), std::nullopt);
}

TEST(Launcher, aTargetFileThatMayNotBeReadIsNoTarget) {
  scene::makeApp(moved);
  scene::makeLauncher(launcher, moved);
  std::filesystem::permissions(targetFile, std::filesystem::perms::none);
  EXPECT_EQ(child::failuresWithoutRights([] {
              EXPECT_EQ(target(), std::nullopt);
              EXPECT_EQ(entry(), std::nullopt);
            }),
            "");
}

TEST(Launcher, aRelativeTargetBeginsAtTheCurrentFolder) {
  scene::makeFolder("/Users/me/Here.app");
  EXPECT_EQ(child::failures([] {
              std::filesystem::current_path("/Users/me");
              EXPECT_EQ(targetFor("Here.app"), "/Users/me/Here.app");
            }),
            "");
}

TEST(Launcher, inTheUsersOwnFolderCountsAsMovedToo) {
  scene::makeApp(moved, {.displayName = "Real"});
  scene::makeLauncher("/Users/me/Applications/Foo.app", moved);
  const auto found = AppScanner::metadataEntry(hostPlatform(), Path("/Users/me/Applications/Foo.app"));
  ASSERT_TRUE(found);
  EXPECT_TRUE(found->isAlreadySymlinked);
}

}  // namespace
}  // namespace quarn
