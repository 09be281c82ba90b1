#include <filesystem>
#include <gtest/gtest.h>
#include <sys/mount.h>

#include "QuarnCore/move/ChosenVolume.h"
#include "QuarnCore/move/PathMover.h"
#include "tests/move/Moving.h"
#include "tests/support/Doubles.h"
#include "tests/support/GatedPlatform.h"
#include "tests/support/NothingLost.h"
#include "tests/support/linux/OwnMounts.h"

namespace quarn {
namespace {

using namespace moving;
using Lines = std::vector<std::string>;

TEST(ChosenVolume, ofAFolderBelowADriveThatIsNotMountedIsNone) {
  scene::makeFolder("/Volumes/Left/behind");
  Platform& host = hostPlatform();
  for (const std::string& place : Lines{"/Volumes/Gone", "/Volumes/Gone/a/b", "/Volumes/Left",
                                        "/Volumes/Left/behind/new", "/Users/me/../../Volumes/Gone/a"}) {
    EXPECT_FALSE(ChosenVolume::holding(host, Path(place))) << place;
  }
  for (const std::string& place :
       Lines{"/Volumes/X9", "/Volumes/X9/a/b", "/Users/me/new/folder", "/Volumes"}) {
    EXPECT_TRUE(ChosenVolume::holding(host, Path(place))) << place;
  }
}

TEST(ChosenVolume, ofADriveIsNotThatOfTheFolderOfMountPoints) {
  scene::link("/Users/me/Volumes", "/Volumes");
  scene::makeFolder("/Users/me/disk");
  Platform& host = hostPlatform();
  for (const std::string& drive :
       Lines{"/Volumes", "/Volumes/.", "/Volumes/X9/..", "/Users/me/Volumes", "/Volumes/None"}) {
    EXPECT_EQ(thrown([&] { ChosenVolume::ofDrive(host, Path(drive)); }),
              "No drive is mounted there: " + drive);
  }
  for (const std::string& drive : Lines{"/Volumes/X9", "/Users/me/disk", "/Users/me/Volumes/X9"}) {
    EXPECT_EQ(thrown([&] { ChosenVolume::ofDrive(host, Path(drive)); }), "nothing") << drive;
  }
}

TEST(ChosenVolume, isFoundThroughALink) {
  scene::link("/Users/me/Drive", "/Volumes/X9");
  Platform& host = hostPlatform();
  const auto volume = ChosenVolume::holding(host, Path("/Users/me/Drive/a/b"));
  ASSERT_TRUE(volume);
  scene::makeFolder("/Volumes/X9/a");
  EXPECT_TRUE(volume->holds(host, Path("/Volumes/X9/a")));
  EXPECT_TRUE(volume->holds(host, Path("/Users/me/Drive/a")));
  EXPECT_TRUE(volume->holds(host, Path("/Users/me/Drive"))) << "what a link leads to counts";
  if (scene::hasMounts()) {
    EXPECT_FALSE(volume->holds(host, Path("/Users/me")));
  }
  EXPECT_FALSE(volume->holds(host, Path("/Volumes/X9/none")));
}

TEST(ChosenVolume, isGoneWithItsMountThoughItsDeviceStays) {
  class Unplugged : public doubles::FakeVolumes {
   public:
    Result<std::vector<Path>> mountPoints() const override { return std::vector<Path>{Path("/")}; }
  } unplugged;
  Platform& host = hostPlatform();
  const auto volume = ChosenVolume::holding(host, Path(scene::drive));
  ASSERT_TRUE(volume);
  EXPECT_TRUE(volume->holds(host, Path(scene::drive)));
  Platform without = replacing({.volumes = &unplugged});
  EXPECT_FALSE(volume->holds(without, Path(scene::drive)));
}

/// Pulls the drive out at one operation of a move; a folder of its name stays on the startup disk.
std::string moveWithTheDrivePulledAt(const std::string& operationsBegin) {
  bool isPulled = false;
  GatedPlatform gated([&](const std::string& operation) {
    if (!isPulled && operation.starts_with(operationsBegin)) {
      isPulled = true;
      EXPECT_EQ(::umount2(scene::drive.c_str(), MNT_DETACH), 0);
      std::filesystem::create_directories(appsFolder);
    }
    return Result<void>();
  });
  return move(gated.platform());
}

TEST(ChosenVolume, thatGoesAwayDuringAMoveNeverCostsTheSource) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  scene::makeApp(app);
  const auto before = scene::tree(app);
  const std::string gone = "The drive is no longer mounted: /Volumes/X9";
  struct Row {
    std::string operation, told;
  };
  const std::vector<Row> rows = {
      {"createFolder", gone},
      {"claim", "Copy failed: the drive was pulled out meanwhile"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(child::failuresWithOwnMounts([&] {
                EXPECT_EQ(moveWithTheDrivePulledAt(row.operation), row.told) << row.operation;
                EXPECT_EQ(scene::tree(app), before) << row.operation;
                EXPECT_FALSE(scene::exists(movedApp)) << "a copy elsewhere is no copy";
              }),
              "");
  }
}

TEST(ChosenVolume, whoseNameAnotherDriveTakesKeepsWhatLiesThere) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  scene::makeApp(app);
  const auto before = scene::tree(app);
  for (const std::string operationsBegin : {"copyAttributes", "flush", "start /usr/bin/find"}) {
    std::filesystem::remove_all(appsFolder);
    EXPECT_EQ(child::failuresWithOwnMounts([&] {
                bool isSwapped = false;
                GatedPlatform gated([&](const std::string& operation) {
                  if (isSwapped || !operation.starts_with(operationsBegin)) return Result<void>();
                  isSwapped = true;
                  EXPECT_EQ(::umount2(scene::drive.c_str(), MNT_DETACH), 0);
                  EXPECT_TRUE(child::mountMemory(scene::drive, "size=4m"));
                  scene::write(movedApp + "/mine", "another drive's only copy");
                  return Result<void>();
                });
                EXPECT_NE(move(gated.platform()), "nothing");
                EXPECT_TRUE(isSwapped);
                EXPECT_EQ(scene::tree(app), before);
                EXPECT_EQ(scene::read(movedApp + "/mine"), "another drive's only copy");
              }),
              "")
        << operationsBegin;
  }
}

TEST(ChosenVolume, thatGoesAwayDuringAPathMoveNeverCostsTheSource) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  const std::string source = "/Users/me/Movies", folder = "/Volumes/X9/Films";
  scene::writeBytes(source + "/a.mov", 9000);
  const auto before = scene::tree(source);
  for (const std::string operationsBegin : {"createFolder", "start /usr/bin/rsync"}) {
    EXPECT_EQ(child::failuresWithOwnMounts([&] {
                bool isPulled = false;
                GatedPlatform gated([&](const std::string& operation) {
                  if (!isPulled && operation.starts_with(operationsBegin)) {
                    isPulled = true;
                    EXPECT_EQ(::umount2(scene::drive.c_str(), MNT_DETACH), 0);
                    std::filesystem::create_directories(folder + "/Movies");
                  }
                  return Result<void>();
                });
                Platform& platform = gated.platform();
                bool isCopied = false;
                EXPECT_EQ(thrown([&] {
                            const auto plan =
                                PathMover::plan(platform, Path(source), Path(folder + "/Movies"));
                            const auto kilobytes = PathMover::copy(platform, plan, false);
                            isCopied = true;
                            PathMover::replaceByLink(platform, plan, kilobytes);
                          }),
                          "The drive is no longer mounted: /Volumes/X9");
                EXPECT_EQ(isCopied, operationsBegin != "createFolder") << "found as early as it can be";
                EXPECT_EQ(scene::tree(source), before);
              }),
              "")
        << operationsBegin;
  }
}

}  // namespace
}  // namespace quarn
