#include <algorithm>
#include <gtest/gtest.h>
#include <sys/statvfs.h>

#include "Platform/Platform.h"
#include "Platform/linux/MountTable.h"
#include "tests/support/ScratchFolder.h"

namespace quarn {
namespace {

std::vector<MountedVolume> volumesOf(const std::string& table) {
  ScratchFolder scratch;
  scratch.write("mtab", table);
  return MountTable::volumesIn(scratch.at("mtab").c_str()).value();
}

std::vector<std::string> mountPoints(const std::vector<MountedVolume>& volumes) {
  std::vector<std::string> texts;
  for (const auto& volume : volumes) texts.push_back(volume.mountPoint.text());
  return texts;
}

TEST(MountTable, knowsTheRootAndWhatLiesDirectlyBelowVolumes) {
  const auto volumes = volumesOf(
      "/dev/sda1 / ext4 rw,relatime 0 0\n"
      "proc /proc proc rw 0 0\n"
      "/dev/sdb1 /Volumes/X9 vfat ro,nosuid 0 0\n"
      "/dev/sdb2 /Volumes/X9/inside ext4 rw 0 0\n"
      "/dev/sdc1 /Volumes/.hidden ext4 rw 0 0\n");
  EXPECT_EQ(mountPoints(volumes), (std::vector<std::string>{"/", "/Volumes/X9", "/Volumes/.hidden"}));
  EXPECT_FALSE(volumes[0].isReadOnly);
  EXPECT_TRUE(volumes[1].isReadOnly);
  EXPECT_EQ(volumes[1].fileSystemType, "vfat");
  EXPECT_EQ(volumes[1].name(), "X9");
  EXPECT_EQ(volumes[0].name(), "Macintosh HD");
  EXPECT_FALSE(volumes[1].isHidden());
  EXPECT_TRUE(volumes[2].isHidden());
}

TEST(MountTable, unescapesNames) {
  const auto volumes = volumesOf("x /Volumes/My\\040Drive\\011\\134 ext4 rw 0 0\n");
  EXPECT_EQ(mountPoints(volumes), (std::vector<std::string>{"/", "/Volumes/My Drive\t\\"}));
}

TEST(MountTable, theLastLineOfAMountPointCounts) {
  const auto volumes = volumesOf(
      "a / ext4 rw 0 0\n"
      "b /Volumes/X9 ext4 rw 0 0\n"
      "c /Volumes/Y ext4 rw 0 0\n"
      "d /Volumes/X9 tmpfs ro 0 0\n");
  EXPECT_EQ(mountPoints(volumes), (std::vector<std::string>{"/", "/Volumes/Y", "/Volumes/X9"}));
  EXPECT_EQ(volumes[2].fileSystemType, "tmpfs");
  EXPECT_TRUE(volumes[2].isReadOnly);
}

TEST(MountTable, theLongestMountPointHoldsAPath) {
  const auto volumes = volumesOf(
      "a / ext4 rw 0 0\n"
      "b /Volumes/X ext4 rw 0 0\n"
      "c /Volumes/XY ext4 rw 0 0\n");
  const auto holder = [&](const char* path) { return MountTable::holding(volumes, Path(path)).name(); };
  EXPECT_EQ(holder("/Volumes/X"), "X");
  EXPECT_EQ(holder("/Volumes/X/a/b"), "X");
  EXPECT_EQ(holder("/Volumes/XY/a"), "XY");
  EXPECT_EQ(holder("/Volumes/XYZ"), "Macintosh HD");
  EXPECT_EQ(holder("/Applications"), "Macintosh HD");
}

TEST(MountTable, aTableThatIsMissingGivesNothing) {
  ScratchFolder scratch;
  EXPECT_FALSE(MountTable::volumesIn(scratch.at("none").c_str()));
}

TEST(Volumes, theRootIsMountedAndNothingHiddenIs) {
  const auto mounted = hostPlatform().volumes.mounted().orThrow();
  EXPECT_EQ(std::count(mounted.begin(), mounted.end(), Path("/")), 1);
  for (const Path& path : mounted) EXPECT_NE(path.lastComponent().front(), '.') << path.text();
}

TEST(Volumes, propertiesOfTheRoot) {
  struct statvfs status {};
  ASSERT_EQ(::statvfs("/", &status), 0);
  const auto properties = hostPlatform().volumes.properties(Path("/")).orThrow();
  EXPECT_EQ(properties.name, "Macintosh HD");
  EXPECT_EQ(properties.totalCapacity, static_cast<std::int64_t>(status.f_blocks * status.f_frsize));
  EXPECT_EQ(properties.isInternal, true);
  EXPECT_EQ(properties.isBrowsable, true);
  EXPECT_TRUE(properties.availableCapacityForImportantUsage.has_value());
  EXPECT_LE(*properties.availableCapacityForImportantUsage, *properties.totalCapacity);
}

TEST(Volumes, aFileBelongsToTheVolumeThatHoldsIt) {
  ScratchFolder scratch;
  scratch.write("file");
  scratch.link("dangling", "/none");
  struct statvfs status {};
  ASSERT_EQ(::statvfs(scratch.text().c_str(), &status), 0);
  for (const char* name : {"file", "dangling"}) {
    const auto properties = hostPlatform().volumes.properties(scratch / name).orThrow();
    EXPECT_EQ(properties.totalCapacity, static_cast<std::int64_t>(status.f_blocks * status.f_frsize)) << name;
  }
}

TEST(Volumes, aMissingItemHasNone) {
  ScratchFolder scratch;
  const auto properties = hostPlatform().volumes.properties(scratch / "none");
  ASSERT_FALSE(properties);
  EXPECT_EQ(properties.error().code, 260);
}

}  // namespace
}  // namespace quarn
