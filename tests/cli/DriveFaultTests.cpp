#include <gtest/gtest.h>

#include "tests/cli/DriveScenes.h"
#include "tests/cli/Faults.h"

using namespace expected;
using namespace fault;

namespace {

TEST(DriveFault, aDriveThatFillsUpInTheMiddleOfTheCopyLeavesTheSourceWhole) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  scene::plug("Tiny", "512k");
  scene::makeApp(app);
  // Hidden files don't count beforehand, so the copy starts and runs out of space.
  scene::writeBytes(app + "/Contents/.hidden/large", 900'000);
  const auto before = scene::tree(app);
  const auto others = foreign();
  const std::string bytes = sizeOf(app);
  const auto run = moveOne({"--target-drive", "Tiny"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, "");
  EXPECT_TRUE(run.out.starts_with(started(bytes, "Tiny") + "    FAIL: Copy failed: ditto failed: ditto: "))
      << run.out;
  EXPECT_NE(run.out.find("No space left on device"), std::string::npos) << run.out;
  EXPECT_TRUE(run.out.ends_with("\nfailed: 1\n")) << run.out;
  EXPECT_EQ(scene::tree(app), before);
  EXPECT_EQ(foreign(), others);
  EXPECT_EQ(names("/Volumes/Tiny/ExternalQuarn/Apps"), std::vector<std::string>{});
  EXPECT_EQ(names(scene::driveTrash("/Volumes/Tiny")), std::vector<std::string>{"Foo.app"});
}

/// Copies half, waits until the drive is out, then ends as told.
void makeDittoThatMeetsTheEndOfTheDrive(const std::string& ending) {
  replaceDitto(
      "mkdir -p \"$3/Contents\"; cp \"$2/Contents/Info.plist\" \"$3/Contents/\"\n"
      "touch /tmp/half\n"
      "while [ ! -e /tmp/out ]; do sleep 0.02; done\n" +
      ending);
}

TEST(DriveFault, aDrivePulledOutInTheMiddleOfTheCopyLeavesTheSourceWhole) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  const std::pair<std::string, std::string> rows[] = {
      {"echo 'ditto: gone' >&2; exit 1", "    FAIL: Copy failed: ditto failed: ditto: gone\n"},
      {"exit 0", "    verifying\n    FAIL: Verification failed: Foo.app is missing at the destination.\n"},
  };
  for (const auto& [ending, text] : rows) {
    scene::makeApp(app);
    const auto before = scene::tree(app);
    makeDittoThatMeetsTheEndOfTheDrive(ending);
    scene::Background run({"/bin/sh", "-c", "quarn move one " + app + " --yes >/tmp/said 2>&1"});
    ASSERT_TRUE(scene::appears("/tmp/half"));
    scene::unplug("X9");
    scene::write("/tmp/out", "");
    EXPECT_EQ(run.wait(), 0);
    EXPECT_EQ(scene::read("/tmp/said"), started(sizeOf(app)) + text + "failed: 1\n");
    EXPECT_EQ(scene::tree(app), before);
    EXPECT_FALSE(scene::exists("/Volumes/X9")) << "no folder in its place";
    EXPECT_FALSE(scene::exists(scene::manifest));
    std::filesystem::remove("/tmp/half");
    std::filesystem::remove("/tmp/out");
    scene::plug("X9", "16m");
  }
}

TEST(DriveFault, aDrivePulledOutBeforeTheNextJobGetsNoFolderInItsPlace) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  scene::makeApp(app);
  scene::makeApp("/Applications/Next.app", {.identifier = "com.example.next"});
  const auto before = scene::tree("/Applications");
  makeDittoThatMeetsTheEndOfTheDrive("exit 0");
  scene::Background run({"/bin/sh", "-c", "quarn move all --yes --no-snapshot >/tmp/said 2>&1"});
  ASSERT_TRUE(scene::appears("/tmp/half"));
  scene::unplug("X9");
  scene::write("/tmp/out", "");
  EXPECT_EQ(run.wait(), 0);
  const std::string said = scene::read("/tmp/said");
  EXPECT_NE(
      said.find("[2/2] Next (" + sizeOf("/Applications/Next.app") +
                ")\n    FAIL: The drive is no longer mounted: /Volumes/X9\n---\nmoved:  0 / 2 (Zero KB)\n"
                "failed: 2\n"),
      std::string::npos)
      << said;
  EXPECT_EQ(scene::tree("/Applications"), before);
  EXPECT_FALSE(scene::exists("/Volumes/X9"));
}

TEST(DriveFault, anotherDriveThatTookTheNameOfTheChosenOneGetsNothing) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  scene::makeApp(app);
  scene::makeApp("/Applications/Next.app", {.identifier = "com.example.next"});
  const auto before = scene::tree("/Applications");
  makeDittoThatMeetsTheEndOfTheDrive("exit 1");
  scene::Background run({"/bin/sh", "-c", "quarn move all --yes --no-snapshot >/tmp/said 2>&1"});
  ASSERT_TRUE(scene::appears("/tmp/half"));
  plugAnotherX9();
  replaceDitto("exec " + realDitto);
  scene::write("/tmp/out", "");
  EXPECT_EQ(run.wait(), 0);
  EXPECT_NE(scene::read("/tmp/said").find("    FAIL: The drive is no longer mounted: /Volumes/X9\n---\n"),
            std::string::npos)
      << scene::read("/tmp/said");
  EXPECT_EQ(scene::tree("/Applications"), before);
  EXPECT_EQ(names("/Volumes/X9"), std::vector<std::string>{});
}

TEST(DriveFault, theRealToolMeetingTheEndOfTheDriveLeavesTheSourceWhole) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  scene::makeApp(app);
  const auto before = scene::tree(app);
  replaceDitto("touch /tmp/half; while [ ! -e /tmp/out ]; do sleep 0.02; done; chmod 555 /Volumes\nexec " +
               realDitto);
  scene::Background run({"/bin/sh", "-c", "quarn move one " + app + " --yes >/tmp/said 2>&1"});
  ASSERT_TRUE(scene::appears("/tmp/half"));
  scene::unplug("X9");
  scene::write("/tmp/out", "");
  EXPECT_EQ(run.wait(), 0);
  EXPECT_NE(scene::read("/tmp/said").find("    FAIL: Copy failed: ditto failed: ditto: " + moved),
            std::string::npos)
      << scene::read("/tmp/said");
  EXPECT_EQ(scene::tree(app), before);
}

TEST(DriveFault, aReadOnlyDriveRefusesTheFolders) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  scene::plug("Locked", "1m", true);
  scene::makeApp(app);
  const auto before = scene::tree(app);
  const std::string bytes = sizeOf(app);
  EXPECT_EQ(
      shown(moveOne({"--target-drive", "Locked"})),
      refused(bytes, "You can’t save the file “ExternalQuarn” because the volume “Locked” is read only.",
              "Locked"));
  EXPECT_EQ(scene::tree(app), before);
}

TEST(DriveFault, aFileInPlaceOfTheFolderForApplicationsIsLeftAlone) {
  scene::makeApp(app);
  scene::write("/Volumes/X9/ExternalQuarn", "a file");
  const auto before = scene::tree(app);
  const auto run = moveOne();
  EXPECT_EQ(run.status, 0);
  EXPECT_NE(run.out.find("    FAIL: The file “"), std::string::npos) << run.out;
  EXPECT_EQ(scene::tree(app), before);
  EXPECT_EQ(scene::read("/Volumes/X9/ExternalQuarn"), "a file");
}

TEST(DriveFault, aTakenDestinationStaysWhateverItIs) {
  scene::makeApp(app);
  const auto before = scene::tree(app);
  const std::string bytes = sizeOf(app);
  const auto others = foreign();
  for (const std::string kind : {"folder", "file", "link"}) {
    if (kind == "folder") scene::write(moved + "/other", "taken");
    if (kind == "file") scene::write(moved, "taken");
    if (kind == "link") scene::link(moved, "/Volumes/X9");
    const auto driveBefore = scene::tree(scene::drive);
    EXPECT_EQ(shown(moveOne()), refused(bytes, "Destination already exists.")) << kind;
    EXPECT_EQ(scene::tree(app), before);
    EXPECT_EQ(scene::tree(scene::drive), driveBefore);
    EXPECT_EQ(foreign(), others);
    std::filesystem::remove_all(moved);
  }
}

TEST(DriveFault, aDanglingLinkAtTheDestinationIsNotWrittenThrough) {
  scene::makeApp(app);
  scene::link(moved, "/Users/me/Documents/elsewhere");
  const auto before = scene::tree(app);
  const auto others = foreign();
  const auto run = moveOne();
  EXPECT_EQ(run.status, 0);
  EXPECT_NE(run.out.find("    FAIL: "), std::string::npos) << run.out;
  EXPECT_EQ(scene::tree(app), before);
  EXPECT_EQ(foreign(), others);
  EXPECT_EQ(scene::target(moved), "/Users/me/Documents/elsewhere");
}

}  // namespace
