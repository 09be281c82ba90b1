#include <gtest/gtest.h>

#include "tests/cli/Expected.h"

using namespace expected;
using scene::quarn;

namespace {

const std::string header = "mount\tname\tinternal\twritable\tfree\ttotal\n";

std::string line(const std::string& mount, const std::string& name, const std::string& internal,
                 const std::string& writable) {
  return mount + "\t" + name + "\t" + internal + "\t" + writable + "\t" + size(freeBytes(mount)) + "\t" +
         size(totalBytes(mount)) + "\n";
}

TEST(MoveDrives, theBootVolumeAndADriveAreListedWithTheirFigures) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  EXPECT_EQ(shown(quarn({"move", "drives"})), printed(header + line("/", "Macintosh HD", "yes", "yes") +
                                                      "/Volumes/X9\tX9\tno\tyes\t67.1 MB\t67.1 MB\n"));
}

TEST(MoveDrives, everyRoomListsTheBootVolumeBeforeTheDrive) {
  const std::string out = quarn({"move", "drives"}).out;
  EXPECT_TRUE(out.starts_with(header + "/\tMacintosh HD\tyes\tyes\t")) << out;
  EXPECT_NE(out.find("\n/Volumes/X9\tX9\tno\tyes\t"), std::string::npos) << out;
}

TEST(MoveDrives, externalDrivesAreInTheOrderOfTheirNamesByLetterCase) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  for (const std::string name : {"beta", "Zeta", "alpha", "My Drive"}) scene::plug(name, "1m");
  EXPECT_EQ(
      shown(quarn({"move", "drives"})),
      printed(header + line("/", "Macintosh HD", "yes", "yes") +
              line("/Volumes/My Drive", "My Drive", "no", "yes") + line("/Volumes/X9", "X9", "no", "yes") +
              line("/Volumes/Zeta", "Zeta", "no", "yes") + line("/Volumes/alpha", "alpha", "no", "yes") +
              line("/Volumes/beta", "beta", "no", "yes")));
}

TEST(MoveDrives, aReadOnlyDriveIsListedAsNotWritable) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  scene::plug("A1", "1m", true);
  const std::string out = quarn({"move", "drives"}).out;
  EXPECT_NE(out.find("/Volumes/A1\tA1\tno\tno\t1 MB\t1 MB\n"), std::string::npos) << out;
}

TEST(MoveDrives, hiddenVolumesAndPlainFoldersAreNotListed) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  scene::plug(".hidden", "1m");
  scene::makeFolder("/Volumes/Folder");
  const std::string out = quarn({"move", "drives"}).out;
  EXPECT_NE(out.find("\n/Volumes/X9\tX9\t"), std::string::npos) << out;
  EXPECT_EQ(out.find("hidden"), std::string::npos) << out;
  EXPECT_EQ(out.find("Folder"), std::string::npos) << out;
}

TEST(MoveDrives, aDriveThatWasPulledOutIsListedNoMore) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  scene::unplug("X9");
  EXPECT_EQ(shown(quarn({"move", "drives"})), printed(header + line("/", "Macintosh HD", "yes", "yes")));
}

}  // namespace
