#include <filesystem>
#include <gtest/gtest.h>
#include <sys/mount.h>

#include "QuarnCore/dedupe/AppDedupeGuard.h"
#include "tests/dedupe/Deduping.h"
#include "tests/support/Child.h"
#include "tests/support/FileSystemDecorator.h"
#include "tests/support/Replacing.h"
#include "tests/support/Unresolving.h"
#include "tests/support/linux/OwnMounts.h"

namespace quarn {
namespace {

using namespace deduping;
namespace fs = std::filesystem;

/// Why the first item that the plan would remove stays; "nothing" if it may go.
std::string refusal(const ReadOnlyPlatform& platform = hostPlatform()) {
  const auto plan = planned();
  if (plan.groups.empty()) return "there is no duplicate";
  return thrown(
      [&] { AppDedupeGuard::requireRemovable(platform, plan.groups[0].remove[0], plan.groups[0].keep); });
}

TEST(DedupeGuard, aDuplicateMayGo) {
  makeDuplicate();
  EXPECT_EQ(refusal(), "nothing");
  scene::makeLauncher(launcher, "/nowhere/Foo.app");
  EXPECT_EQ(refusal(), "nothing");
  scene::link("/Volumes/X9/dangling", "/nowhere");
  for (const std::string& target :
       {std::string("/Volumes/X9/dangling"), "/" + std::string(70'000, 'x'), "/" + std::string(300, 'x'),
        "/Volumes/X9" + std::string(1, '\0'), app + "\n" + app}) {
    scene::write(launcher + targetFile, target);
    EXPECT_EQ(refusal(), "nothing") << target.substr(0, 60);
  }
  scene::write(launcher + targetFile, "\xFF\xFE");
  EXPECT_EQ(refusal(), "nothing");
  fs::remove(launcher + targetFile);
  EXPECT_EQ(refusal(), "nothing");
  scene::makeFolder(launcher + targetFile);
  EXPECT_EQ(refusal(), "nothing");
}

/// The disk, but for one path.
class Unreadable : public FileSystemDecorator {
 public:
  explicit Unreadable(std::string path, bool isUnseen = false)
      : FileSystemDecorator(hostPlatform().files), path_(std::move(path)), isUnseen_(isUnseen) {}

  bool exists(const Path& path) const override {
    return !(isUnseen_ && path.text() == path_) && FileSystemDecorator::exists(path);
  }
  Result<FileAttributes> attributes(const Path& path) const override {
    if (isUnseen_ && path.text() == path_) return error();
    return FileSystemDecorator::attributes(path);
  }
  Result<std::string> read(const Path& file) const override {
    if (file.text() == path_) return error();
    return FileSystemDecorator::read(file);
  }

 private:
  static PlatformError error() { return {cocoaErrorDomain, CocoaErrorCode::fileReadUnknown, "It broke."}; }
  std::string path_;
  bool isUnseen_;
};

TEST(DedupeGuard, aLauncherWhoseTargetCantBeReadStays) {
  makeDuplicate();
  for (const bool isUnseen : {false, true}) {
    Unreadable files(launcher + targetFile, isUnseen);
    EXPECT_EQ(refusal(replacing({.files = &files})), "What “Foo Launcher.app” opens can’t be read.");
  }
}

TEST(DedupeGuard, aLauncherWhoseTargetCantBeLookedForStays) {
  scene::makeApp(app);
  scene::makeLauncher(launcher, copy);
  const std::string sentence = "The application that “Foo Launcher.app” opens can’t be looked for.";
  Unreadable files(copy, true);
  EXPECT_EQ(refusal(replacing({.files = &files})), sentence);
  scene::makeApp("/Volumes/X9/locked/Foo.app");
  scene::link("/Volumes/X9/link", "/Volumes/X9/locked/Foo.app");
  fs::permissions("/Volumes/X9/locked", fs::perms::none);
  for (const std::string target : {"/Volumes/X9/locked/Foo.app", "/Volumes/X9/link"}) {
    scene::makeLauncher(launcher, target);
    EXPECT_EQ(child::failuresWithoutRights([&] { EXPECT_EQ(refusal(), sentence); }), "") << target;
  }
}

TEST(DedupeGuard, aPartOfTheApplicationThatStaysStays) {
  scene::makeApp(app);
  scene::makeLauncher(app + "/Contents/Helpers/L.app", app);
  scene::link("/Applications/Helpers", "Foo.app/Contents/Helpers");
  EXPECT_EQ(refusal(), "“L.app” belongs to the application that stays.");
}

TEST(DedupeGuard, aBackupAndWhatWasMovedToADriveStay) {
  scene::makeApp(app);
  for (const std::string place : {"/Volumes/X9/QuarnBackups/1", "/Volumes/X9/ExternalQuarn/Apps/Suite",
                                  "/Users/me/Library/Application Support/Quarn/Old"}) {
    scene::makeLauncher(place + "/L.app", app);
    scene::link("/Applications/Linked", place);
    EXPECT_EQ(refusal(), "“L.app” belongs where it is.") << place;
    fs::remove("/Applications/Linked");
  }
  scene::makeLauncher("/Volumes/X9/Elsewhere/L.app", app);
  scene::link("/Applications/Linked", "/Volumes/X9/Elsewhere");
  EXPECT_EQ(refusal(), "nothing");
}

TEST(DedupeGuard, aFolderThatHoldsTheHomeStays) {
  scene::makeApp(app);
  scene::makeLauncher("/Volumes/X9/All/L.app", app);
  scene::makeFolder("/Volumes/X9/All/L.app/home/Applications");
  scene::link("/Applications/Linked", "/Volumes/X9/All");
  fs::rename("/Users/me", "/Users/me before");
  scene::link("/Users/me", "/Volumes/X9/All/L.app/home");
  EXPECT_EQ(refusal(), "“L.app” belongs where it is.");
  fs::remove("/Users/me");
  fs::rename("/Users/me before", "/Users/me");
}

TEST(DedupeGuard, aLauncherWithAVolumeInsideStays) {
  if (!child::canMount()) GTEST_SKIP() << "no right to mount a volume";
  makeDuplicate();
  scene::makeFolder(launcher + "/Contents/Disk");
  EXPECT_EQ(child::failuresWithOwnMounts([&] {
              ASSERT_TRUE(child::mountMemory(launcher + "/Contents/Disk", "size=1m"));
              EXPECT_EQ(refusal(), "A volume is mounted inside Foo Launcher.app: " + launcher +
                                       "/Contents/Disk. Eject it first.");
            }),
            "");
}

TEST(DedupeGuard, aLauncherThatAMountShowsUnderASecondNameStaysThere) {
  if (!child::canMount()) GTEST_SKIP() << "no right to mount a volume";
  makeDuplicate();
  const std::string second = "/Applications/Second.app";
  scene::makeFolder(second);
  EXPECT_EQ(child::failuresWithOwnMounts([&] {
              ASSERT_EQ(::mount(launcher.c_str(), second.c_str(), nullptr, MS_BIND, nullptr), 0);
              EXPECT_EQ(told(AppDedupeService::run(hostPlatform())),
                        (Lines{launcher + " -> /Users/me/.Trash/Foo Launcher.app",
                               second + ": Second.app is a volume of its own: " + second}));
            }),
            "");
}

TEST(DedupeGuard, aLauncherStaysWhereItCannotBeSeenWhatLiesInWhat) {
  makeDuplicate();
  for (const std::string& item : {launcher, app}) {
    Unresolving files(item);
    EXPECT_EQ(refusal(replacing({.files = &files})),
              Unresolving::of(item == app ? "Foo.app" : "Foo Launcher.app"));
  }
}

}  // namespace
}  // namespace quarn
