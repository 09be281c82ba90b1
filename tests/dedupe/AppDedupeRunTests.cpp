#include <filesystem>
#include <gtest/gtest.h>

#include "tests/dedupe/Deduping.h"
#include "tests/support/FileSystemDecorator.h"
#include "tests/support/GatedPlatform.h"
#include "tests/support/Replacing.h"

namespace quarn {
namespace {

using namespace deduping;
namespace fs = std::filesystem;

const std::string trash = "/Users/me/.Trash";

Lines carriedOut(const std::optional<AppDedupePlan>& plan = std::nullopt) {
  return told(AppDedupeService::run(hostPlatform(), plan));
}

TEST(DedupeRun, takesADuplicateToTheTrashWholeAndLeavesTheRest) {
  makeDuplicate();
  scene::makeLauncher("/Applications/Other.app", "/nowhere");
  scene::write(trash + "/Foo Launcher.app/mine", "of the same name");
  const auto whole = scene::tree(launcher), stays = scene::tree(app);
  const auto size = planned().removableBytes();
  const auto result = AppDedupeService::run(hostPlatform());
  ASSERT_EQ(result.movedItems.size(), 2u);
  EXPECT_FALSE(result.dryRun);
  EXPECT_EQ(result.movedItems[0].originalPath, launcher);
  EXPECT_EQ(result.movedItems[0].category, UninstallCategory::executable);
  EXPECT_EQ(result.plan.groups[0].remove[0].path, launcher);
  EXPECT_EQ(result.movedItems[0].trashedTo, trash + "/Foo Launcher 2.app");
  EXPECT_EQ(result.movedItems[0].stashedTo, std::nullopt);
  EXPECT_EQ(result.movedItems[0].error, std::nullopt);
  EXPECT_EQ(result.movedItems[0].sizeBytes + result.movedItems[1].sizeBytes, size);
  EXPECT_EQ(scene::tree(trash + "/Foo Launcher 2.app"), whole);
  EXPECT_FALSE(scene::exists(launcher));
  EXPECT_EQ(scene::tree(app), stays);
  EXPECT_EQ(carriedOut(), Lines{}) << "a second run finds nothing";
}

TEST(DedupeRun, aRehearsalTellsWhatWouldGoAndChangesNothing) {
  makeDuplicate();
  const auto before = scene::tree("/Applications");
  const auto result = AppDedupeService::rehearse(hostPlatform());
  EXPECT_TRUE(result.dryRun);
  EXPECT_EQ(told(result.plan), duplicateTold);
  EXPECT_EQ(told(result), (Lines{launcher + " -> "}));
  EXPECT_EQ(result.movedItems[0].sizeBytes, result.plan.removableBytes());
  EXPECT_EQ(scene::tree("/Applications"), before);
  EXPECT_FALSE(scene::exists(trash));
  EXPECT_EQ(told(AppDedupeService::rehearse(hostPlatform(), AppDedupePlan{})), Lines{});
}

TEST(DedupeRun, changesNothingButByTheTrash) {
  makeDuplicate();
  Lines operations;
  GatedPlatform gated([&](const std::string& operation) -> Result<void> {
    operations.push_back(operation);
    return {};
  });
  AppDedupeService::run(gated.platform());
  EXPECT_EQ(operations, (Lines{"trash " + launcher}));
}

TEST(DedupeRun, anItemThatTheTrashRefusesStaysAndTheNextOneGoes) {
  makeDuplicate();
  scene::makeLauncher("/Applications/Z.app", app);
  GatedPlatform gated([&](const std::string& operation) -> Result<void> {
    if (operation == "trash " + launcher) return PlatformError("test", 1, "It broke.");
    return {};
  });
  EXPECT_EQ(told(AppDedupeService::run(gated.platform())),
            (Lines{launcher + ": It broke.", "/Applications/Z.app -> " + trash + "/Z.app"}));
  EXPECT_TRUE(scene::exists(launcher));
}

// What stands at a path of the plan by the time that it is removed.

TEST(DedupeRun, aLauncherThatIsGoneByThenIsToldAsAFailure) {
  makeDuplicate();
  const auto plan = planned();
  fs::remove_all(launcher);
  EXPECT_EQ(
      carriedOut(plan),
      (Lines{launcher + ": The file “Foo Launcher.app” couldn’t be opened because there is no such file."}));
}

TEST(DedupeRun, whatTookTheLaunchersPlaceByThenStays) {
  makeDuplicate();
  const auto plan = planned();
  const std::string noLauncher = launcher + ": “Foo Launcher.app” isn’t a launcher any more.";
  const std::string noDuplicate = launcher + ": “Foo Launcher.app” isn’t a duplicate any more.";
  const auto expectStays = [&](const std::string& line) {
    const auto before = scene::tree("/Applications");
    EXPECT_EQ(carriedOut(plan), Lines{line});
    EXPECT_EQ(scene::tree("/Applications"), before);
    EXPECT_FALSE(scene::exists(trash));
  };
  fs::remove_all(launcher);
  scene::makeApp(launcher);
  expectStays(noLauncher);
  makeWithPlist(launcher, "");
  expectStays(noLauncher);
  fs::remove_all(launcher);
  scene::makeFolder(launcher);
  expectStays(noLauncher);
  fs::remove_all(launcher);
  scene::link(launcher, app);
  expectStays(noLauncher);
  fs::remove_all(launcher);
  scene::makeLauncher("/Volumes/X9/L.app", app);
  scene::link(launcher, "/Volumes/X9/L.app");
  expectStays(noDuplicate);
  fs::remove_all(launcher);
  scene::makeApp(copy);
  scene::makeLauncher(launcher, copy);
  expectStays(noDuplicate);
}

TEST(DedupeRun, aLauncherStaysIfItsApplicationIsntThereAnyMore) {
  scene::makeApp(app);
  scene::makeLauncher(launcher, "/nowhere");
  const auto plan = planned();
  const std::string line = launcher + ": The application that was to stay isn’t at " + app + " any more.";
  fs::remove_all(app);
  EXPECT_EQ(carriedOut(plan), Lines{line});
  scene::makeApp(copy);
  scene::link(app, copy);
  EXPECT_EQ(carriedOut(plan), Lines{line});
  fs::remove_all(app);
  scene::makeLauncher(app, copy);
  EXPECT_EQ(carriedOut(plan), Lines{line});
  scene::makeApp(app, {.identifier = "com.example.another"});
  fs::remove_all(app + "/Contents/Resources");
  EXPECT_EQ(carriedOut(plan), Lines{line});
  EXPECT_TRUE(scene::exists(launcher));
  fs::remove_all(app);
  scene::makeApp(app);
  EXPECT_EQ(carriedOut(plan), (Lines{launcher + " -> " + trash + "/Foo Launcher.app"}));
}

TEST(DedupeRun, aLauncherStaysIfTheFolderOfItsApplicationBecameALink) {
  scene::makeApp("/Applications/Suite/Foo.app");
  scene::makeLauncher(launcher, "/nowhere");
  const auto plan = planned();
  fs::rename("/Applications/Suite", "/Applications/.suite");
  scene::link("/Applications/Suite", ".suite");
  EXPECT_EQ(carriedOut(plan), (Lines{launcher + ": The application that was to stay isn’t at "
                                                "/Applications/Suite/Foo.app any more."}));
}

// One bundle, two paths.

TEST(DedupeRun, aLauncherThatIsReachedByTwoPathsGoesOnceAndHasOneOutcome) {
  scene::makeApp(app);
  scene::makeLauncher("/Applications/Tools/L.app", app);
  scene::link("/Applications/Linked", "Tools");
  const auto whole = scene::tree("/Applications/Tools/L.app");
  EXPECT_EQ(carriedOut(), (Lines{"/Applications/Linked/L.app -> " + trash + "/L.app",
                                 "/Applications/Tools/L.app -> " + trash + "/L.app"}));
  EXPECT_EQ(scene::tree(trash + "/L.app"), whole);
  EXPECT_EQ(fs::read_symlink("/Applications/Linked"), "Tools") << "the link of the folder stays";
  EXPECT_EQ(carriedOut(), Lines{});
}

TEST(DedupeRun, aLauncherThatIsReachedByTwoPathsAndStaysIsTriedOnce) {
  scene::makeApp(app);
  scene::makeLauncher("/Applications/Tools/L.app", app);
  scene::link("/Applications/Linked", "Tools");
  int asked = 0;
  GatedPlatform gated([&](const std::string&) -> Result<void> {
    return ++asked == 1 ? Result<void>(PlatformError("test", 1, "It broke.")) : Result<void>();
  });
  EXPECT_EQ(told(AppDedupeService::run(gated.platform())),
            (Lines{"/Applications/Linked/L.app: It broke.", "/Applications/Tools/L.app: It broke."}));
  EXPECT_EQ(asked, 1);
  EXPECT_TRUE(scene::exists("/Applications/Tools/L.app"));
}

/// The disk, but one item can't be looked at the first few times after it was planned.
class Blinking : public FileSystemDecorator {
 public:
  Blinking(std::string path, int times)
      : FileSystemDecorator(hostPlatform().files), path_(std::move(path)), times_(times) {}

  Result<FileAttributes> attributes(const Path& path) const override {
    if (path.text() == path_ && times_-- > 0) return PlatformError("test", 1, "It broke.");
    return FileSystemDecorator::attributes(path);
  }

 private:
  std::string path_;
  mutable int times_;
};

TEST(DedupeRun, aPathThatCouldNotBeLookedAtOnceStillHasTheOutcomeOfItsBundle) {
  for (const std::string path : {"/Applications/Linked/L.app", "/Applications/Tools/L.app"}) {
    fs::remove_all(trash);
    fs::remove("/Applications/Linked");
    scene::makeApp(app);
    scene::makeLauncher("/Applications/Tools/L.app", app);
    scene::link("/Applications/Linked", "Tools");
    const auto plan = planned();
    Blinking files(path, 1);
    Platform platform = replacing({.files = &files});
    EXPECT_EQ(told(AppDedupeService::run(platform, plan)),
              (Lines{"/Applications/Linked/L.app -> " + trash + "/L.app",
                     "/Applications/Tools/L.app -> " + trash + "/L.app"}))
        << path;
  }
}

TEST(DedupeRun, whatStandsAtTheSecondPathByThenIsLookedAtAnew) {
  scene::makeApp(app);
  scene::makeLauncher("/Applications/Tools/L.app", app);
  scene::link("/Applications/Linked", "Tools");
  class Replacer : public Trash {
   public:
    Result<Path> moveToTrash(const Path& item) override {
      auto moved = hostPlatform().trash.moveToTrash(item);
      scene::makeApp("/Applications/Tools/L.app", {.version = "brought by an updater"});
      return moved;
    }
  } replacer;
  Platform platform = replacing({.trash = &replacer});
  EXPECT_EQ(told(AppDedupeService::run(platform)),
            (Lines{"/Applications/Linked/L.app -> " + trash + "/L.app",
                   "/Applications/Tools/L.app: “L.app” isn’t a launcher any more."}));
  EXPECT_TRUE(scene::exists("/Applications/Tools/L.app"));
}

TEST(DedupeRun, theFolderOfTheUserThatIsALinkToTheSharedOneLosesNothingElse) {
  fs::remove_all(own);
  makeDuplicate();
  scene::link(own, "/Applications");
  const auto stays = scene::tree(app);
  EXPECT_EQ(carriedOut(), (Lines{launcher + " -> " + trash + "/Foo Launcher.app",
                                 own + "/Foo Launcher.app -> " + trash + "/Foo Launcher.app"}));
  EXPECT_EQ(scene::tree(app), stays);
  EXPECT_EQ(carriedOut(), Lines{});
}

}  // namespace
}  // namespace quarn
