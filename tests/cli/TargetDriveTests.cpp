#include <gtest/gtest.h>

#include "tests/cli/Expected.h"

using namespace expected;
using scene::quarn;

namespace {

std::string targetLine(const std::string& name, const std::string& mount) {
  return "# target: " + name + "  free=" + size(freeBytes(mount)) + "\n";
}

std::string planned(const std::string& name, const std::string& mount) {
  return printed(targetLine(name, mount) + "# apps eligible: 0   jobs: 0   total: Zero KB\n" +
                 "size\tsource\t->\tdestination\n");
}

TEST(TargetDrive, isTheFirstExternalWritableDriveUnlessNamed) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  scene::plug("A1", "1m", true);
  scene::plug("Z1", "1m");
  EXPECT_EQ(shown(quarn({"move", "plan"})), planned("X9", "/Volumes/X9"));
  scene::plug("B1", "1m");
  EXPECT_EQ(shown(quarn({"move", "plan"})), planned("B1", "/Volumes/B1"));
}

TEST(TargetDrive, isNamedByItsMountPathOrItsName) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  scene::plug("My Drive", "1m");
  EXPECT_EQ(shown(quarn({"move", "plan", "--target-drive", "My Drive"})),
            planned("My Drive", "/Volumes/My Drive"));
  EXPECT_EQ(shown(quarn({"move", "plan", "--target-drive", "/Volumes/My Drive"})),
            planned("My Drive", "/Volumes/My Drive"));
}

TEST(TargetDrive, isNamedInAnySpellingOfItsLetters) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  const std::string onDisk = "Caf\u00e9";
  const std::string typed = "Cafe\u0301";
  scene::plug(onDisk, "1m");
  for (const std::string& wanted : {onDisk, typed, "/Volumes/" + onDisk, "/Volumes/" + typed}) {
    EXPECT_EQ(shown(quarn({"move", "plan", "--target-drive", wanted})),
              planned(onDisk, "/Volumes/" + onDisk));
  }
}

TEST(TargetDrive, mayBeTheBootVolumeByItsName) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  EXPECT_EQ(shown(quarn({"move", "plan", "--target-drive", "Macintosh HD"})), planned("Macintosh HD", "/"));
  EXPECT_EQ(shown(quarn({"move", "plan", "--target-drive", "/"})), planned("Macintosh HD", "/"));
}

TEST(TargetDrive, mayBeReadOnlyWhenNamed) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  scene::plug("A1", "1m", true);
  EXPECT_EQ(shown(quarn({"move", "plan", "--target-drive", "A1"})), planned("A1", "/Volumes/A1"));
}

TEST(TargetDrive, ofTwoMatchesTheFirstInTheOrderOfTheListCounts) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  // The name "Macintosh HD" is also that of the boot volume, which stands first.
  scene::plug("Macintosh HD", "1m");
  EXPECT_EQ(shown(quarn({"move", "plan", "--target-drive", "Macintosh HD"})), planned("Macintosh HD", "/"));
  EXPECT_EQ(shown(quarn({"move", "plan", "--target-drive", "/Volumes/Macintosh HD"})),
            planned("Macintosh HD", "/Volumes/Macintosh HD"));
}

TEST(TargetDrive, aLeadingTildeIsExpandedInThePath) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  const scene::RunOptions homeBesideTheDrive = {.input = "", .folder = "/", .environment = {"HOME=/Volumes"}};
  EXPECT_EQ(shown(quarn({"move", "plan", "--target-drive", "~/X9"}, homeBesideTheDrive)),
            planned("X9", "/Volumes/X9"));
}

TEST(TargetDrive, aLeadingTildeIsNotExpandedInTheName) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  scene::plug("~", "1m");
  EXPECT_EQ(shown(quarn({"move", "plan", "--target-drive", "~"})), planned("~", "/Volumes/~"));
}

TEST(TargetDrive, aLeadingTildeIsNotExpandedInTheRefusal) {
  for (const std::string word : {"~", "~/X9", "~/"}) {
    EXPECT_EQ(shown(quarn({"move", "plan", "--target-drive", word})),
              failed("Target drive not found: " + word + ". Run `move drives` to list mounts."));
  }
}

TEST(TargetDrive, anUnknownDriveIsNamedInTheRefusal) {
  for (const std::string word : {"/Volumes/X9/", "x9", "", "/Volumes", "Volumes/X9", "--yes", "Nope"}) {
    for (const std::string command : {"plan", "all", "next"}) {
      EXPECT_EQ(shown(quarn({"move", command, "--target-drive", word})),
                failed("Target drive not found: " + word + ". Run `move drives` to list mounts."));
    }
    EXPECT_EQ(shown(quarn({"move", "one", "com.example.foo", "--target-drive", word})),
              failed("Target drive not found: " + word + ". Run `move drives` to list mounts."));
  }
}

TEST(TargetDrive, theFlagAsTheLastWordCountsAsMissing) {
  const std::string chosen = shown(quarn({"move", "plan"}));
  EXPECT_EQ(shown(quarn({"move", "plan", "--target-drive"})), chosen);
}

TEST(TargetDrive, onlyTheFirstOccurrenceOfTheFlagIsRead) {
  EXPECT_EQ(shown(quarn({"move", "plan", "--target-drive", "Nope", "--target-drive", "X9"})),
            failed("Target drive not found: Nope. Run `move drives` to list mounts."));
}

TEST(TargetDrive, withoutAnExternalWritableDriveOneMustBeNamed) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  scene::unplug("X9");
  scene::plug("A1", "1m", true);
  const std::string refusal = failed("No external writable drive mounted. Pass --target-drive </Volumes/X>.");
  for (const std::string command : {"plan", "all", "next"}) {
    EXPECT_EQ(shown(quarn({"move", command})), refusal) << command;
  }
  EXPECT_EQ(shown(quarn({"move", "one", "com.example.foo"})), refusal);
}

}  // namespace
