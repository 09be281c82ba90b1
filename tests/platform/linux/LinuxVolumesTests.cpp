#include <algorithm>
#include <gtest/gtest.h>
#include <sys/statvfs.h>

#include "Platform/HostPlatform.h"
#include "Platform/linux/MountTable.h"
#include "tests/support/Scene.h"
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

TEST(LinuxVolumes, theRootIsMountedAndNothingHiddenIs) {
  const auto mounted = hostPlatform().volumes.mounted().orThrow();
  EXPECT_EQ(std::count(mounted.begin(), mounted.end(), Path("/")), 1);
  for (const Path& path : mounted) EXPECT_NE(path.lastComponent().front(), '.') << path.text();
}

TEST(LinuxVolumes, propertiesOfTheRoot) {
  struct statvfs status {};
  ASSERT_EQ(::statvfs("/", &status), 0);
  const auto properties = hostPlatform().volumes.properties(Path("/")).orThrow();
  EXPECT_EQ(properties.name, "Macintosh HD");
  EXPECT_EQ(properties.totalCapacity, static_cast<std::int64_t>(status.f_blocks * status.f_frsize));
  EXPECT_EQ(properties.isInternal, true);
  EXPECT_EQ(properties.isBrowsable, true);
}

struct statvfs statusOf(const std::string& path) {
  struct statvfs status {};
  EXPECT_EQ(::statvfs(path.c_str(), &status), 0) << path;
  return status;
}

/// Others write meanwhile, so that the figure is one between two looks that agree.
void expectFreeSpaceForEverybody(const std::string& path) {
  for (int attempt = 0; attempt < 100; ++attempt) {
    const auto before = statusOf(path);
    const auto properties = hostPlatform().volumes.properties(Path(path)).orThrow();
    if (statusOf(path).f_bavail != before.f_bavail) continue;
    EXPECT_EQ(properties.availableCapacity, properties.availableCapacityForImportantUsage);
    EXPECT_EQ(properties.availableCapacityForImportantUsage,
              static_cast<std::int64_t>(before.f_bavail * before.f_frsize));
    return;
  }
  FAIL() << "the free space of " << path << " never stood still";
}

TEST(LinuxVolumes, freeSpaceIsWhatEverybodyMayUse) {
  expectFreeSpaceForEverybody("/");
  const std::string program = std::filesystem::read_symlink("/proc/self/exe");
  for (const std::string& path : {std::string("/"), std::string("/tmp"), program}) {
    const auto status = statusOf(path);
    if (status.f_bfree != status.f_bavail) return expectFreeSpaceForEverybody(path);
  }
  GTEST_SKIP() << "no file system here keeps free space for root alone";
}

TEST(LinuxVolumes, anItemBelongsToTheVolumeThatHoldsIt) {
  ScratchFolder here;
  ScratchFolder there(scene::drive);
  here.write("file");
  there.write("file");
  here.link("dangling", "/none");
  here.link("toTheDrive", there.at("file"));
  there.link("dangling", "/none");
  there.link("fromTheDrive", here.at("file"));
  const auto properties = [](const Path& item) { return hostPlatform().volumes.properties(item).orThrow(); };
  for (const char* name : {"file", "dangling", "toTheDrive"}) {
    EXPECT_EQ(properties(here / name).name, "Macintosh HD") << name;
    EXPECT_EQ(properties(here / name).totalCapacity, properties(here.path()).totalCapacity) << name;
  }
  const auto status = statusOf(scene::drive);
  for (const char* name : {"file", "dangling", "fromTheDrive"}) {
    EXPECT_EQ(properties(there / name).name, "X9") << name;
    EXPECT_EQ(properties(there / name).totalCapacity,
              static_cast<std::int64_t>(status.f_blocks * status.f_frsize))
        << name;
  }
}

TEST(LinuxVolumes, aMissingItemHasNone) {
  ScratchFolder scratch;
  const auto properties = hostPlatform().volumes.properties(scratch / "none");
  ASSERT_FALSE(properties);
  EXPECT_EQ(properties.error().code, 260);
}

}  // namespace
}  // namespace quarn
