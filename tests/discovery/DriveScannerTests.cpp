#include "QuarnCore/discovery/DriveScanner.h"
#include "tests/support/Doubles.h"
#include "tests/support/Replacing.h"
#include "tests/support/Scene.h"

namespace quarn {
namespace {

using doubles::FakeVolumes;

Platform with(Volumes& volumes) {
  return replacing({.volumes = &volumes});
}

std::vector<DriveInfo> scan(FakeVolumes& volumes) {
  Platform platform = with(volumes);
  return DriveScanner::scan(platform);
}

std::vector<std::string> paths(const std::vector<DriveInfo>& drives) {
  std::vector<std::string> list;
  for (const DriveInfo& drive : drives) list.push_back(drive.mountPath.text());
  return list;
}

VolumeProperties browsable(const std::string& name, std::optional<bool> internal = false) {
  VolumeProperties volume;
  volume.name = name;
  volume.isBrowsable = true;
  volume.isInternal = internal;
  return volume;
}

TEST(DriveScanner, tellsEverythingThatTheVolumeSays) {
  FakeVolumes volumes;
  volumes.add("/Volumes/X9", {"Extern", 2'000, 500, true, false, true, "APFS", {}});
  volumes.add("/", {"Macintosh HD", 9'000, 700, true, true, false, "Mac OS Extended", {}});
  const auto drives = scan(volumes);
  ASSERT_EQ(drives.size(), 2U);
  EXPECT_EQ(drives[0],
            (DriveInfo{"/", "Macintosh HD", Path("/"), 9'000, 700, true, true, "Mac OS Extended"}));
  EXPECT_EQ(drives[1],
            (DriveInfo{"/Volumes/X9", "Extern", Path("/Volumes/X9"), 2'000, 500, false, false, "APFS"}));
}

TEST(DriveScanner, whatAVolumeDoesNotSayCountsAsExternalWritableAndZero) {
  FakeVolumes volumes;
  VolumeProperties onlyBrowsable;
  onlyBrowsable.isBrowsable = true;
  volumes.add("/Volumes/Quiet One", onlyBrowsable);
  EXPECT_EQ(scan(volumes),
            (std::vector<DriveInfo>{{"/Volumes/Quiet One", "Quiet One", Path("/Volumes/Quiet One"), 0, 0,
                                     false, true, std::nullopt}}));
}

TEST(DriveScanner, onlyBrowsableVolumesAreDrives) {
  FakeVolumes volumes;
  VolumeProperties hidden = browsable("a");
  hidden.isBrowsable = false;
  VolumeProperties unknown = browsable("b");
  unknown.isBrowsable = std::nullopt;
  volumes.add("/Volumes/a", hidden);
  volumes.add("/Volumes/b", unknown);
  volumes.add("/Volumes/c", browsable("c"));
  EXPECT_EQ(paths(scan(volumes)), (std::vector<std::string>{"/Volumes/c"}));
}

TEST(DriveScanner, aVolumeThatCannotBeReadIsPassedOver) {
  FakeVolumes volumes;
  volumes.order.emplace_back("/Volumes/broken");
  volumes.add("/Volumes/good", browsable("good"));
  EXPECT_EQ(paths(scan(volumes)), (std::vector<std::string>{"/Volumes/good"}));
}

TEST(DriveScanner, withoutAListOfVolumesThereAreNone) {
  FakeVolumes volumes;
  volumes.add("/", browsable("Macintosh HD", true));
  volumes.listable = false;
  EXPECT_TRUE(scan(volumes).empty());
}

TEST(DriveScanner, internalVolumesComeFirstThenNamesInPlainOrder) {
  FakeVolumes volumes;
  volumes.add("/Volumes/1", browsable("b"));
  volumes.add("/Volumes/2", browsable("Z"));
  volumes.add("/Volumes/3", browsable("a"));
  volumes.add("/Volumes/4", browsable("B10"));
  volumes.add("/Volumes/5", browsable("B9"));
  volumes.add("/Volumes/6", browsable("zz", true));
  volumes.add("/", browsable("Macintosh HD", true));
  EXPECT_EQ(paths(scan(volumes)), (std::vector<std::string>{"/", "/Volumes/6", "/Volumes/4", "/Volumes/5",
                                                            "/Volumes/2", "/Volumes/3", "/Volumes/1"}));
}

TEST(DriveScanner, anUnknownPlaceIsSortedWithTheExternalOnes) {
  FakeVolumes volumes;
  volumes.add("/Volumes/a", browsable("a", std::nullopt));
  volumes.add("/Volumes/z", browsable("z", true));
  EXPECT_EQ(paths(scan(volumes)), (std::vector<std::string>{"/Volumes/z", "/Volumes/a"}));
}

TEST(DriveScanner, equalNamesKeepTheOrderOfTheSystem) {
  FakeVolumes volumes;
  for (int i = 19; i >= 0; --i) volumes.add("/Volumes/twin " + std::to_string(i), browsable("Twin"));
  volumes.add("/Volumes/first", browsable("A"));
  std::vector<std::string> expected = {"/Volumes/first"};
  for (int i = 19; i >= 0; --i) expected.push_back("/Volumes/twin " + std::to_string(i));
  EXPECT_EQ(paths(scan(volumes)), expected);
}

TEST(DriveScanner, namesThatDifferInSpellingAloneAreEqual) {
  FakeVolumes volumes;
  volumes.add("/Volumes/1", browsable("e\u0301tude"));
  volumes.add("/Volumes/2", browsable("\u00e9tude"));
  volumes.add("/Volumes/3", browsable("f"));
  EXPECT_EQ(paths(scan(volumes)), (std::vector<std::string>{"/Volumes/3", "/Volumes/1", "/Volumes/2"}));
}

TEST(DriveScanner, findsTheStartupVolumeAndTheDrive) {
  const auto drives = DriveScanner::scan(hostPlatform());
  ASSERT_EQ(paths(drives), (std::vector<std::string>{"/", "/Volumes/X9"}));
  EXPECT_EQ(drives[0].name, "Macintosh HD");
  EXPECT_TRUE(drives[0].isInternal);
  EXPECT_EQ(drives[1].name, "X9");
  EXPECT_FALSE(drives[1].isInternal);
  EXPECT_TRUE(drives[1].isWritable);
  EXPECT_GT(drives[1].freeBytes, 0);
  EXPECT_GE(drives[1].totalBytes, drives[1].freeBytes);
}

TEST(DriveScanner, tellsTheSizeOfADriveAndWhetherItCanBeWritten) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  scene::plug("Locked", "2m", true);
  const auto drives = DriveScanner::scan(hostPlatform());
  ASSERT_EQ(paths(drives), (std::vector<std::string>{"/", "/Volumes/Locked", "/Volumes/X9"}));
  EXPECT_FALSE(drives[1].isWritable);
  EXPECT_EQ(drives[1].totalBytes, 2 * 1024 * 1024);
  EXPECT_EQ(drives[2].totalBytes, 64 * 1024 * 1024);
}

TEST(VolumeCapacityProbe, tellsWhatIsFreeForImportantUse) {
  FakeVolumes volumes;
  volumes.add("/Volumes/X9", {"X9", 2'000, 1'234, true, false, false, "APFS", {}});
  Platform platform = with(volumes);
  EXPECT_EQ(VolumeCapacityProbe::freeBytes(platform, Path("/Volumes/X9")), 1'234);
}

TEST(VolumeCapacityProbe, zeroMeansUnknown) {
  FakeVolumes volumes;
  VolumeProperties silent = browsable("silent");
  silent.totalCapacity = 2'000;
  volumes.add("/Volumes/silent", silent);
  Platform platform = with(volumes);
  EXPECT_EQ(VolumeCapacityProbe::freeBytes(platform, Path("/Volumes/silent")), 0);
  EXPECT_EQ(VolumeCapacityProbe::freeBytes(platform, Path("/Volumes/nowhere")), 0);
}

TEST(VolumeCapacityProbe, aFolderThatDoesNotExistGivesZero) {
  EXPECT_EQ(VolumeCapacityProbe::freeBytes(hostPlatform(), Path("/Volumes/X9/ExternalQuarn/Apps")), 0);
}

TEST(VolumeCapacityProbe, aFolderOnADriveGivesWhatTheDriveHas) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  scene::plug("Small", "1m");
  scene::writeBytes("/Volumes/Small/f", 512 * 1024);
  const auto free = VolumeCapacityProbe::freeBytes(hostPlatform(), Path("/Volumes/Small/f"));
  EXPECT_GT(free, 0);
  EXPECT_LE(free, 512 * 1024);
}

}  // namespace
}  // namespace quarn
