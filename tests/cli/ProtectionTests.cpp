#include <csignal>
#include <filesystem>
#include <gtest/gtest.h>

#include "tests/cli/Expected.h"
#include "tests/support/Sanitized.h"
#include "tests/support/Scene.h"

namespace {

using expected::failed;
using expected::shown;

const std::string app = "/Applications/Foo.app";
const std::string moved = "/Volumes/X9/ExternalQuarn/Apps/Foo.app";

scene::Run movePath(const std::string& source, const std::string& destination) {
  return scene::quarn({"move", "path", "--source", source, "--destination", destination, "--yes"});
}

void expectRefused(const scene::Run& run, const std::string& message) {
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err, "error\t" + message + "\n");
}

TEST(PathProtection, aFileIsNotMovedOntoItsOwnFolder) {
  scene::write("/Users/me/E/report.txt", "the only copy");
  const auto before = scene::tree("/Users/me/E");
  expectRefused(movePath("/Users/me/E/report.txt", "/Users/me/E"),
                "Source lies inside the destination: /Users/me/E");
  EXPECT_EQ(scene::tree("/Users/me/E"), before);
}

TEST(PathProtection, aFolderIsNotMovedOntoAFolderAroundIt) {
  scene::write("/Users/me/D/Samples/Samples/deep.txt", "deep");
  scene::write("/Users/me/D/Samples/top.txt", "top");
  scene::link("/Users/me/byAnotherName", "/Users/me/D");
  const auto before = scene::tree("/Users/me/D");
  for (const std::string destination : {"/Users/me/D", "/Users/me", "/Users/me/byAnotherName"}) {
    expectRefused(movePath("/Users/me/D/Samples", destination),
                  "Source lies inside the destination: " + destination);
    EXPECT_EQ(scene::tree("/Users/me/D"), before);
  }
}

TEST(PathProtection, aFileIsNotMovedOntoAFolder) {
  scene::write("/Users/me/f.txt", "f");
  expectRefused(movePath("/Users/me/f.txt", scene::drive),
                "Destination is a folder, but the source is not: /Volumes/X9");
  EXPECT_EQ(scene::read("/Users/me/f.txt"), "f");
  EXPECT_FALSE(scene::isLink("/Users/me/f.txt"));
}

TEST(PathProtection, anEmptyTextIsNoPath) {
  const std::string usage = "Usage: move path --source <path> --destination <path> [--yes] [--progress]";
  expectRefused(movePath("", scene::drive + "/x"), usage);
  expectRefused(movePath("/Users/me", ""), usage);
}

TEST(WayBackProtection, aLauncherThatLeadsToAFolderAroundItselfLosesNothing) {
  for (const std::string target : {"/", "/Applications", "/Applications/Foo.app/Contents"}) {
    std::filesystem::remove_all(app);
    scene::makeLauncher(app, target);
    const auto before = scene::tree(app);
    expectRefused(scene::quarn({"move", "restore", app}),
                  "Verification failed: Foo.app leads to a volume or to a folder around itself");
    EXPECT_EQ(scene::tree(app), before) << target;
  }
}

TEST(WayBackProtection, aLinkToAFolderAroundItselfOrToAVolumeStays) {
  for (const std::string target : {"/", "/Applications", "..", "/Volumes/X9"}) {
    std::filesystem::remove(app);
    scene::link(app, target);
    const scene::Run run = scene::run({"quarn", "move", "restore", app}, {.folder = "/Applications"});
    EXPECT_EQ(run.status, 1) << target;
    EXPECT_EQ(run.err,
              "error\tVerification failed: Foo.app leads to a volume or to a folder around itself\n");
    EXPECT_EQ(scene::target(app), target);
  }
}

TEST(ForeignFile, thatNeverEndsStopsNoListing) {
  scene::makeApp(app);
  scene::makeApp("/Applications/Other.app", {.identifier = "com.example.other"});
  std::filesystem::remove(app + "/Contents/Info.plist");
  scene::link(app + "/Contents/Info.plist", "/dev/zero");
  const scene::Run run = scene::quarn({"move", "apps"});
  EXPECT_EQ(run.status, 0);
  EXPECT_NE(run.out.find("Foo\t\tlow"), std::string::npos) << run.out;
  EXPECT_NE(run.out.find("Other\tcom.example.other"), std::string::npos) << run.out;
}

TEST(ForeignFile, ofTerabytesStopsNoMove) {
  scene::makeApp(app);
  scene::write(scene::manifest, "");
  std::filesystem::resize_file(scene::manifest, 7'000'000'000'000);
  const scene::Run run = scene::quarn({"move", "one", app, "--yes"});
  EXPECT_EQ(run.status, 0);
  EXPECT_NE(run.out.find("    ok in "), std::string::npos) << run.out << run.err;
  EXPECT_EQ(scene::target(app), moved);
}

TEST(ForeignFile, aLedgerThatIsAFifoHangsNothing) {
  scene::makeApp(app);
  scene::makeFolder(std::filesystem::path(scene::installsDB).parent_path());
  ASSERT_EQ(scene::shell("mkfifo '" + scene::installsDB + "'").status, 0);
  EXPECT_EQ(scene::quarn({"move", "apps"}).status, 0);
  EXPECT_NE(scene::quarn({"move", "one", app, "--yes"}).out.find("    ok in "), std::string::npos);
}

TEST(Manifest, isNotSpoiledByANameThatIsNoText) {
  scene::makeApp(app);
  scene::makeApp("/Applications/bad\xff.app", {.identifier = "com.example.bad"});
  for (const std::string& bundle : {app, std::string("/Applications/bad\xff.app")}) {
    EXPECT_EQ(scene::quarn({"move", "one", bundle, "--no-data", "--yes"}).status, 0);
    EXPECT_TRUE(scene::isLink(bundle));
  }
  const std::string manifest = scene::read(scene::manifest);
  EXPECT_NE(manifest.find("\\/Applications\\/Foo.app"), std::string::npos) << manifest;
  EXPECT_EQ(manifest.find('\xff'), std::string::npos);
}

TEST(Output, thatCannotBeWrittenIsAFailure) {
  const scene::Run run = scene::shell("quarn move drives > /dev/full");
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err, "error\tStandard output could not be written.\n");
}

TEST(Output, thatCannotBeWrittenIsAFailureWhateverTheRunEndedWith) {
  const auto lost = shown({1, "", "error\tStandard output could not be written.\n"});
  EXPECT_EQ(shown(scene::shell("quarn move next > /dev/full")), lost);
  scene::makeApp(app);
  EXPECT_EQ(shown(scene::shell("quarn move next </dev/null > /dev/full")), lost);
}

TEST(Output, thatCannotBeWrittenDoesNotHideWhatEndedTheRun) {
  scene::makeApp(app);
  EXPECT_EQ(shown(scene::shell("quarn move one " + app + " --target-drive Nope > /dev/full")),
            failed("Target drive not found: Nope. Run `move drives` to list mounts."));
}

TEST(Output, anErrorStandsBehindWhatWasPrintedBeforeIt) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs a drive of a given size";
  scene::makeApp(app, {}, 80'000'000);
  const scene::Run run = scene::shell("quarn move one " + app + " --yes 2>&1");
  EXPECT_EQ(run.status, 1);
  EXPECT_LT(run.out.find("Foo  ->  X9"), run.out.find("error\tNot enough space")) << run.out;
}

TEST(Output, closedStreamsAreNotMistakenForFiles) {
  scene::makeApp(app);
  EXPECT_EQ(scene::shell("exec <&- >&- 2>&-; exec quarn move one " + app + " --yes").status, 0);
  EXPECT_EQ(scene::target(app), moved);
  EXPECT_EQ(scene::read(scene::manifest).front(), '[');
}

TEST(Interruption, theCopyThatGoesOnWithoutQuarnLeavesTheSourceWhole) {
  scene::makeApp(app);
  const auto before = scene::tree(app);
  scene::replaceTool("/usr/bin/ditto",
                     "#!/bin/sh\n/usr/bin/touch /tmp/begun\n/bin/sleep 1\n"
                     "/usr/libexec/quarn-room/ditto \"$@\"\n/usr/bin/touch /tmp/ended\n");
  scene::Background run({"quarn", "move", "one", app, "--yes"});
  ASSERT_TRUE(scene::appears("/tmp/begun"));
  ::kill(run.pid(), SIGINT);
  EXPECT_EQ(run.wait(), -SIGINT);
  ASSERT_TRUE(scene::appears("/tmp/ended"));
  EXPECT_EQ(scene::tree(app), before);
  EXPECT_NE(scene::quarn({"move", "one", app, "--yes"}).out.find("FAIL: Destination already exists."),
            std::string::npos);
}

TEST(Interruption, aReaderThatStopsReadingLosesNothing) {
  scene::makeApp(app);
  const auto before = scene::tree(app);
  scene::shell("quarn move one " + app + " --yes | /usr/bin/head -n 1");
  EXPECT_EQ(scene::isLink(app) ? scene::tree(moved) : scene::tree(app), before);
}

TEST(Shortage, isNotTakenForAMissingTool) {
  if (isSanitized) GTEST_SKIP() << "a sanitized program needs descriptors of its own to look at its memory";
  scene::makeApp(app);
  const scene::Run run =
      scene::shell("ulimit -n 6; exec /usr/local/libexec/quarn move one " + app + " --yes");
  EXPECT_NE(
      run.out.find("FAIL: Copy failed: The operation couldn’t be completed. (NSPOSIXErrorDomain error 24.)"),
      std::string::npos)
      << run.out << run.err;
  EXPECT_FALSE(scene::isLink(app));
}

TEST(EndsOfChildren, ignoredByTheStarterAreLearnedAllTheSame) {
  scene::makeApp(app);
  scene::replaceTool("/usr/bin/ditto", "#!/bin/sh\nexit 3\n");
  const scene::Run run = scene::shell("trap '' CHLD; exec quarn move one " + app + " --yes");
  EXPECT_NE(run.out.find("FAIL: Copy failed: ditto failed: exit 3"), std::string::npos) << run.out;
  EXPECT_FALSE(scene::isLink(app));
}

}  // namespace
