#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>

#include "Platform/HostPlatform.h"
#include "QuarnCore/health/BrokenLauncherDetector.h"
#include "tests/support/Child.h"
#include "tests/support/Doubles.h"
#include "tests/support/Replacing.h"
#include "tests/support/Scene.h"
#include "tests/support/Unresolving.h"

namespace quarn {
namespace {

const std::string targetFile = "/Contents/Resources/ExternalAppTarget.txt";
const std::string gone = "/Volumes/X9/ExternalQuarn/Apps/Gone.app";

std::vector<HealthIssue> found(const std::string& root = "/Applications") {
  auto issues = BrokenLauncherDetector::detect(hostPlatform(), Path(root));
  std::sort(issues.begin(), issues.end(),
            [](const HealthIssue& a, const HealthIssue& b) { return a.location.text() < b.location.text(); });
  return issues;
}

std::vector<std::string> locations() {
  std::vector<std::string> paths;
  for (const HealthIssue& issue : found()) paths.push_back(issue.location.text());
  return paths;
}

void makeShim(const std::string& at, const std::string& text) {
  scene::makeLauncher(at, gone);
  scene::write(at + targetFile, text);
}

TEST(BrokenLaunchers, aLauncherWhoseTargetIsMissingIsToldWhole) {
  makeShim("/Applications/Foo.app", " " + gone + "\n");
  EXPECT_EQ(found(), (std::vector<HealthIssue>{
                         {.kind = HealthIssue::Kind::brokenLauncher,
                          .location = Path("/Applications/Foo.app"),
                          .target = Path(gone),
                          .detail = "Launcher points to a missing app target. The app will not open until "
                                    "the launcher is retargeted, removed, or the app is reinstalled.",
                          .sizeBytes = 0}}));
}

TEST(BrokenLaunchers, aTargetThatExistsIsEnoughWhateverItIs) {
  scene::write("/Volumes/X9/file", "no application");
  for (const std::string text : {"/", "/Volumes/X9", "/Volumes/X9/file", "/Applications/Foo.app\n"}) {
    makeShim("/Applications/Foo.app", text);
    EXPECT_EQ(locations(), std::vector<std::string>()) << text;
  }
}

TEST(BrokenLaunchers, whatHasNoTargetIsNoLauncher) {
  for (const std::string text : {"", " \t\r\n ", "\xFF\xFE/nowhere"}) {
    makeShim("/Applications/Foo.app", text);
    EXPECT_EQ(locations(), std::vector<std::string>());
  }
  scene::makeApp("/Applications/Real.app");
  scene::makeApp("/Volumes/X9/Moved.app");
  scene::link("/Applications/Moved.app", "/Volumes/X9/Moved.app");
  scene::link("/Applications/Dangling.app", "/nowhere");
  scene::makeFolder("/Applications/Folder.app" + targetFile);
  EXPECT_EQ(locations(), std::vector<std::string>());
}

TEST(BrokenLaunchers, anEmptyTextDoesNotStandForTheCurrentFolder) {
  doubles::FakePlaces places;
  places.current = Path("/a folder that was removed");
  makeShim("/Applications/Foo.app", "\n");
  EXPECT_TRUE(BrokenLauncherDetector::detect(replacing({.places = &places}), Path("/Applications")).empty());
}

TEST(BrokenLaunchers, onlyVisibleApplicationsDirectlyInTheFolderCount) {
  for (const std::string name : {".Hidden.app", "Upper.APP", "Folder", "Utilities/Deep.app"})
    makeShim("/Applications/" + name, gone);
  EXPECT_EQ(locations(), std::vector<std::string>());
  makeShim("/Applications/A b\t\n'.app", gone);
  scene::link("/Applications/Link.app", "/Applications/Folder");
  EXPECT_EQ(locations(), (std::vector<std::string>{"/Applications/A b\t\n'.app", "/Applications/Link.app"}));
}

TEST(BrokenLaunchers, hostileTargetsAreMissingTargets) {
  scene::makeFolder("/Volumes/X9/a");
  for (const std::string& text : {std::string("garbage <>&\x01\x1B[2J"), std::string(1'000'000, 'x'),
                                  "/Volumes/X9/a" + std::string(1, '\0') + "b", std::string("~/Documents"),
                                  std::string("/Volumes/X9/a\n/Volumes/X9/a")}) {
    makeShim("/Applications/Foo.app", text);
    const auto issues = found();
    ASSERT_EQ(issues.size(), 1u) << text.substr(0, 60);
    EXPECT_TRUE(issues[0].target->isAbsolute());
  }
}

TEST(BrokenLaunchers, aTargetThatCantBeLookedAtIsNotMissing) {
  makeShim("/Applications/Foo.app", gone);
  Unseeable files("/Volumes/X9");
  EXPECT_TRUE(BrokenLauncherDetector::detect(replacing({.files = &files}), Path("/Applications")).empty());
}

TEST(BrokenLaunchers, aFolderThatCantBeListedHasNone) {
  makeShim("/Applications/Foo.app", gone);
  EXPECT_TRUE(found("/nowhere").empty());
  EXPECT_TRUE(found("/Applications/Foo.app/Contents/Info.plist").empty());
  std::filesystem::permissions("/Applications", std::filesystem::perms::none);
  EXPECT_EQ(child::failuresWithoutRights([] { EXPECT_TRUE(found().empty()); }), "");
}

}  // namespace
}  // namespace quarn
