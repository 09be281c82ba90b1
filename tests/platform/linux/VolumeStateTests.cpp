#include "tests/platform/FileSystemContract.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/linux/OwnMounts.h"

namespace quarn::contract {
namespace {

FileSystem& files() {
  return hostPlatform().files;
}

int obstacle(const Path& item) {
  const auto found = files().obstacleToRemoval(item);
  return found ? found->code : 0;
}

TEST(FullVolume, keepsTheOldContentOfAnAtomicWrite) {
  if (!child::canMount()) GTEST_SKIP() << "no right to mount a volume that is full";
  ScratchFolder scratch;
  EXPECT_EQ(child::failuresWithOwnMounts([&] {
              ASSERT_TRUE(child::mountMemory(scratch.text(), "size=64k"));
              scratch.write("x", "old");
              const auto written = files().writeAtomically(scratch / "x", std::string(1'000'000, 'n'));
              EXPECT_EQ(code(written), 640);
              EXPECT_EQ(text(written),
                        "You can’t save the file “x” because the volume “Macintosh HD” is out of space.");
              EXPECT_EQ(scratch.read("x"), "old");
              EXPECT_EQ(scratch.count(), 1u);
            }),
            "");
}

TEST(FullVolume, isLeftAsItWasByACopy) {
  if (!child::canMount()) GTEST_SKIP() << "no right to mount a small volume";
  ScratchFolder scratch;
  scratch.folder("drive");
  scratch.write("tree/a/big", std::string(4'000'000, 'x'));
  scratch.write("tree/small");
  EXPECT_EQ(child::failuresWithOwnMounts([&] {
              ASSERT_TRUE(child::mountMemory(scratch.at("drive"), "size=1m"));
              EXPECT_EQ(code(files().copy(scratch / "tree", scratch / "drive/tree")), 640);
              EXPECT_FALSE(scratch.stands("drive/tree"));
              EXPECT_EQ(scratch.read("tree/a/big").size(), 4'000'000u);
            }),
            "");
}

TEST(ReadOnlyVolume, takesNothing) {
  if (!child::canMount()) GTEST_SKIP() << "no right to mount a read-only volume";
  ScratchFolder scratch;
  EXPECT_EQ(child::failuresWithOwnMounts([&] {
              ASSERT_TRUE(child::mountMemory(scratch.text(), "size=64k"));
              scratch.write("x", "old");
              scratch.write("y", "old");
              ASSERT_TRUE(child::makeReadOnly(scratch.text()));
              const auto made = files().createFolder(scratch / "z");
              EXPECT_EQ(code(made), 642);
              EXPECT_EQ(text(made),
                        "You can’t save the file “z” because the volume “Macintosh HD” is read only.");
              EXPECT_EQ(code(files().createSymbolicLink(scratch / "z", "x")), 642);
              EXPECT_EQ(code(files().writeAtomically(scratch / "x", "new")), 642);
              EXPECT_EQ(code(files().rename(scratch / "x", scratch / "z")), 642);
              EXPECT_EQ(code(files().remove(scratch / "x")), 642);
              EXPECT_EQ(code(files().createFolder(scratch.path())), 0);
              EXPECT_EQ(scratch.read("x"), "old");
            }),
            "");
}

TEST(ReadOnlyVolume, isAnObstacleToRemoval) {
  if (!child::canMount()) GTEST_SKIP() << "no right to mount a volume";
  const ScratchFolder scratch;
  EXPECT_EQ(child::failuresWithOwnMounts([&] {
              ASSERT_TRUE(child::mountMemory(scratch.text(), "size=1m"));
              scratch.write("tree/file");
              ASSERT_TRUE(child::makeReadOnly(scratch.text()));
              EXPECT_EQ(obstacle(scratch / "tree"), 642);
            }),
            "");
}

TEST(VolumeMountedInside, isLeftAloneByACopy) {
  if (!child::canMount()) GTEST_SKIP() << "no right to mount a volume";
  ScratchFolder scratch;
  scratch.folder("tree/drive");
  scratch.write("tree/file");
  EXPECT_EQ(child::failuresWithOwnMounts([&] {
              ASSERT_TRUE(child::mountMemory(scratch.at("tree/drive"), "size=1m"));
              scratch.write("tree/drive/foreign");
              EXPECT_EQ(code(files().copy(scratch / "tree", scratch / "tree/drive/tree")), 512);
              EXPECT_FALSE(scratch.stands("tree/drive/tree"));
              EXPECT_EQ(code(files().copy(scratch / "tree", scratch / "copy")), 512);
              EXPECT_FALSE(scratch.stands("copy"));
              EXPECT_TRUE(scratch.stands("tree/drive/foreign"));
            }),
            "");
}

TEST(VolumeMountedInside, isAnObstacleToRemoval) {
  if (!child::canMount()) GTEST_SKIP() << "no right to mount a volume";
  const ScratchFolder scratch;
  scratch.folder("tree/drive");
  EXPECT_EQ(child::failuresWithOwnMounts([&] {
              ASSERT_TRUE(child::mountMemory(scratch.at("tree/drive"), "size=1m"));
              EXPECT_EQ(obstacle(scratch / "tree/drive"), 512);
              EXPECT_EQ(obstacle(scratch / "tree"), 0);
            }),
            "");
}

}  // namespace
}  // namespace quarn::contract
