#include <filesystem>
#include <unistd.h>

#include "QuarnCore/move/HealthManifest.h"
#include "tests/move/Moving.h"
#include "tests/support/Doubles.h"
#include "tests/support/GatedPlatform.h"

namespace quarn {
namespace {

using namespace moving;
namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

const std::string noLink = "The file “Foo.app” couldn’t be opened.";

void record(const std::string& source) {
  HealthManifest::record(hostPlatform(), {source, movedApp, std::nullopt, 1, {}});
}

TEST(Restore, bringsAMovedBundleHomeAndForgetsTheMove) {
  doubles::FakeClock clock;
  clock.moment = Moment{std::chrono::seconds(1'769'850'300)};
  scene::makeInstallsDB();
  scene::makeApp(app);
  scene::link(app + "/Contents/Current", "MacOS");
  const auto before = scene::tree(app);
  ASSERT_EQ(move(), "nothing");
  record("/Applications/Other.app");
  EXPECT_EQ(restore(replacing({.clock = &clock}), "/Applications/./Foo.app"), "nothing");
  EXPECT_EQ(scene::tree(app), before);
  EXPECT_FALSE(scene::exists(movedApp));
  const auto left = HealthManifest::load(hostPlatform());
  ASSERT_EQ(left.size(), 1u);
  EXPECT_EQ(left[0].sourcePath, "/Applications/Other.app");
  EXPECT_EQ(scene::sql("SELECT app_name, uninstalled_at FROM installs"),
            (Lines{"Foo.app|2026-01-31T09:05:00Z"}));
}

TEST(Restore, bringsDataHome) {
  scene::writeBytes(support + "/state", 9000);
  const auto before = scene::tree(support);
  ASSERT_EQ(move(hostPlatform(), support, supportFolder), "nothing");
  EXPECT_EQ(restore(hostPlatform(), support), "nothing");
  EXPECT_EQ(scene::tree(support), before);
  EXPECT_EQ(scene::read(scene::manifest), "[\n\n]");
}

TEST(Restore, ofALinkNobodyRecordedWorksToo) {
  scene::write(scene::drive + "/note", "text");
  scene::link(scene::home + "/note", scene::drive + "/note");
  EXPECT_EQ(restore(hostPlatform(), scene::home + "/note"), "nothing");
  EXPECT_FALSE(scene::isLink(scene::home + "/note"));
  EXPECT_EQ(scene::read(scene::home + "/note"), "text");
  EXPECT_FALSE(scene::exists(scene::manifest));
}

TEST(Restore, removesTheLinkThenMovesThenForgets) {
  scene::makeApp(app);
  ASSERT_EQ(move(), "nothing");
  Lines steps;
  GatedPlatform gated([&steps](const std::string& operation) {
    steps.push_back(operation);
    return Result<void>();
  });
  EXPECT_EQ(restore(gated.platform()), "nothing");
  Lines expected = {"removeSymbolicLink " + app, "rename " + movedApp + " -> " + app};
  if (scene::hasMounts()) {
    for (const std::string& step :
         {"copy " + movedApp + " -> " + app, "flush " + app, "start /usr/bin/find " + movedApp,
          "start /usr/bin/find " + app, "remove " + movedApp})
      expected.push_back(step);
  }
  expected.push_back("createFolder /Users/me/Library/Application Support/Quarn");
  expected.push_back("writeAtomically " + scene::manifest);
  EXPECT_EQ(steps, expected);
}

TEST(Restore, ofALauncherReplacesItByItsTarget) {
  scene::makeApp(movedApp);
  const auto before = scene::tree(movedApp);
  scene::makeLauncher(app, movedApp);
  record(app);
  EXPECT_EQ(restore(), "nothing");
  EXPECT_EQ(scene::tree(app), before);
  EXPECT_FALSE(scene::exists(movedApp));
  EXPECT_TRUE(HealthManifest::load(hostPlatform()).empty());
}

TEST(Restore, ofALauncherWhoseTargetVanishedFailsBecauseItIsNoLink) {
  scene::makeLauncher(app, "/Volumes/X9/none.app");
  const auto before = scene::tree(app);
  EXPECT_EQ(restore(), noLink);
  EXPECT_EQ(scene::tree(app), before);
}

TEST(Restore, ofALauncherThatLeadsIntoItselfLosesNothing) {
  scene::link("/Applications/Alias.app", app);
  for (const std::string& target :
       Lines{app, app + "/Contents", app + "/Contents/MacOS/..", "/Applications/./Foo.app",
             "/Applications/Alias.app", "/Applications/Alias.app/Contents"}) {
    fs::remove_all(app);
    scene::makeLauncher(app, target);
    const auto before = scene::tree("/Applications");
    EXPECT_EQ(restore(), "Verification failed: Foo.app leads to a volume or to a folder around itself")
        << target;
    EXPECT_EQ(scene::tree("/Applications"), before) << target;
  }
}

TEST(Restore, ofALinkOrLauncherToAFolderAroundItLosesNothing) {
  scene::makeFolder("/Applications/Suite/Inner");
  const std::string linked = "/Applications/Suite/Inner/Link.app";
  const std::string launcher = "/Applications/Suite/Inner/Launcher.app";
  for (const std::string& target : Lines{"/Applications/Suite", "/Applications/Suite/Inner", "/"}) {
    fs::remove_all(linked);
    fs::remove_all(launcher);
    scene::link(linked, target);
    scene::makeLauncher(launcher, target);
    const auto before = scene::tree("/Applications");
    EXPECT_EQ(restore(hostPlatform(), linked),
              "Verification failed: Link.app leads to a volume or to a folder around itself");
    EXPECT_EQ(restore(hostPlatform(), launcher),
              "Verification failed: Launcher.app leads to a volume or to a folder around itself");
    EXPECT_EQ(scene::tree("/Applications"), before) << target;
  }
}

TEST(Restore, ofALauncherBesideATargetWithALongerNameWorks) {
  scene::makeApp(app + "2.app");
  scene::makeLauncher(app, app + "2.app");
  EXPECT_EQ(restore(), "nothing");
  EXPECT_FALSE(scene::exists(app + "2.app"));
  EXPECT_FALSE(scene::exists(app + "/Contents/Resources/ExternalAppTarget.txt"));
}

TEST(Restore, ofAPlainItemIsToldInThePlatformsWords) {
  scene::write("/tmp/plain.txt", "text");
  EXPECT_EQ(restore(hostPlatform(), "/tmp/plain.txt"), "The file “plain.txt” couldn’t be opened.");
  EXPECT_EQ(scene::read("/tmp/plain.txt"), "text");
  EXPECT_EQ(restore(hostPlatform(), "/tmp/none"),
            "The file “none” couldn’t be opened because there is no such file.");
  scene::makeApp(app);
  const auto before = scene::tree(app);
  EXPECT_EQ(restore(), noLink);
  EXPECT_EQ(scene::tree(app), before);
}

TEST(Restore, ofADanglingLinkKeepsTheLink) {
  scene::link(app, movedApp);
  record(app);
  EXPECT_EQ(restore(), "Source path no longer exists.");
  EXPECT_EQ(scene::target(app), movedApp);
  EXPECT_EQ(HealthManifest::load(hostPlatform()).size(), 1u);
}

TEST(Restore, takesARelativeTargetAgainstTheCurrentFolder) {
  scene::makeApp(movedApp);
  scene::link(app, "Apps/Foo.app");
  EXPECT_EQ(restore(), "Source path no longer exists.");
  ASSERT_EQ(::chdir("/Volumes/X9/ExternalQuarn"), 0);
  EXPECT_EQ(restore(), "nothing");
  EXPECT_TRUE(scene::exists(app + "/Contents/Info.plist"));
  EXPECT_FALSE(scene::exists(movedApp));
}

TEST(Restore, ofALinkToALinkFindsALinkAgain) {
  scene::makeApp(scene::drive + "/Real.app");
  scene::link(movedApp, scene::drive + "/Real.app");
  scene::link(app, movedApp);
  record(app);
  EXPECT_EQ(restore(),
            "Verification failed: Foo.app is still a symlink after restore — data was not internalized");
  EXPECT_EQ(scene::target(app), scene::drive + "/Real.app");
  EXPECT_EQ(HealthManifest::load(hostPlatform()).size(), 1u) << "not forgotten";
}

TEST(Restore, ofALinkThatDanglesWhereItComesHomeFindsItMissing) {
  scene::makeApp(appsFolder + "/Real.app");
  scene::link(movedApp, "Real.app");
  scene::link(app, movedApp);
  EXPECT_EQ(restore(), "Verification failed: Foo.app missing after restore");
  EXPECT_TRUE(scene::exists(appsFolder + "/Real.app/Contents/Info.plist"));
}

TEST(Restore, thatCannotRemoveTheLinkChangesNothing) {
  scene::makeApp(movedApp);
  scene::link(app, movedApp);
  GatedPlatform gated([](const std::string& operation) {
    if (operation.starts_with("remove")) return Result<void>(PlatformError("test", 1, "It broke."));
    return Result<void>();
  });
  EXPECT_EQ(restore(gated.platform()), "It broke.");
  EXPECT_EQ(scene::target(app), movedApp);
  EXPECT_TRUE(scene::exists(movedApp + "/Contents/Info.plist"));
}

TEST(Restore, thatFindsItsPlaceTakenTellsSoAndLeavesTheItemOnTheDrive) {
  scene::makeApp(movedApp);
  scene::link(app, movedApp);
  record(app);
  const auto before = scene::tree(movedApp);
  GatedPlatform gated([](const std::string& operation) {
    if (operation.starts_with("rename")) scene::write(app, "somebody else's");
    return Result<void>();
  });
  EXPECT_EQ(restore(gated.platform()),
            "“Foo.app” couldn’t be moved to “Applications” because an item with the "
            "same name already exists.");
  EXPECT_EQ(scene::read(app), "somebody else's");
  EXPECT_EQ(scene::tree(movedApp), before);
  EXPECT_EQ(HealthManifest::load(hostPlatform()).size(), 1u) << "not forgotten";
}

TEST(Restore, recordsThatCannotBeKeptDoNotFailIt) {
  scene::makeApp(movedApp);
  scene::link(app, movedApp);
  scene::write(scene::installsDB, "no database");
  record(app);
  GatedPlatform gated([](const std::string& operation) {
    if (operation.starts_with("writeAtomically")) return Result<void>(PlatformError("test", 1, "It broke."));
    return Result<void>();
  });
  EXPECT_EQ(restore(gated.platform()), "nothing");
  EXPECT_FALSE(scene::isLink(app));
}

}  // namespace
}  // namespace quarn
