#include <gtest/gtest.h>

#include "tests/cli/Expected.h"

using namespace expected;
using scene::quarn;

namespace {

const std::string apps = "/Volumes/X9/ExternalQuarn/Apps/";

/// Says what it was asked for, and reports a snapshot of a known date.
const std::string snapshotTool =
    "#!/bin/sh\necho \"$@\" >>/tmp/asked\necho 'Created local snapshot with date: 2026-01-31-090500'\n";
const std::string snapshotLine = "snapshot: com.apple.TimeMachine.2026-01-31-090500.local\n";

std::string summary(std::size_t count, std::size_t jobs, std::int64_t total) {
  return "target drive: X9 (/Volumes/X9)\nfree:         " + size(freeBytes(scene::drive)) +
         "\napps:         " + std::to_string(count) + " eligible\njobs:         " + std::to_string(jobs) +
         " (" + size(total) + ")\n";
}

std::string done(const std::string& name) {
  return "    verifying\n    linking\n    ok in #.#s -> " + apps + name + ".app\n";
}

scene::Run timelessly(scene::Run run) {
  run.out = timeless(run.out);
  return run;
}

/// Two applications, "Bar" and "Foo"; what they take together.
std::int64_t twoApps() {
  scene::makeApp("/Applications/Foo.app", {.identifier = "com.example.foo"}, 40'000);
  scene::makeApp("/Applications/Bar.app", {.identifier = "com.example.bar"}, 20'000);
  return allocated("/Applications/Foo.app") + allocated("/Applications/Bar.app");
}

TEST(MoveAll, everyEligibleApplicationMovesInTheOrderOfTheNames) {
  const std::int64_t total = twoApps();
  scene::replaceTool("/usr/bin/tmutil", snapshotTool);
  const std::string bar = sizeOf("/Applications/Bar.app");
  const std::string foo = sizeOf("/Applications/Foo.app");
  const std::string expectedText = summary(2, 2, total) + snapshotLine + "[1/2] Bar (" + bar + ")\n" +
                                   done("Bar") + "[2/2] Foo (" + foo + ")\n" + done("Foo") +
                                   "---\nmoved:  2 / 2 (" + size(total) + ")\n";
  EXPECT_EQ(shown(timelessly(quarn({"move", "all", "--yes"}))), printed(expectedText));
  EXPECT_EQ(scene::target("/Applications/Foo.app"), apps + "Foo.app");
  EXPECT_EQ(scene::target("/Applications/Bar.app"), apps + "Bar.app");
  EXPECT_EQ(scene::read("/tmp/asked"), "localsnapshot\n") << "one snapshot";
}

TEST(MoveAll, withNothingToMoveItSaysSoAndNeitherAsksNorSnapshots) {
  scene::replaceTool("/usr/bin/tmutil", snapshotTool);
  EXPECT_EQ(shown(quarn({"move", "all"})), printed(summary(0, 0, 0) + "nothing to move.\n"));
  EXPECT_EQ(shown(quarn({"move", "all", "--dry-run"})), printed(summary(0, 0, 0) + "nothing to move.\n"));
  EXPECT_FALSE(scene::exists("/tmp/asked"));
}

TEST(MoveAll, applicationsThatAreLinksWithoutDataAreCountedButGiveNoJob) {
  scene::makeApp("/Volumes/X9/Foo.app");
  scene::link("/Applications/Foo.app", "/Volumes/X9/Foo.app");
  EXPECT_EQ(shown(quarn({"move", "all", "--yes"})), printed(summary(1, 0, 0) + "nothing to move.\n"));
}

TEST(MoveAll, aDryRunPrintsTheJobsAndNeitherAsksNorSnapshotsNorChanges) {
  const std::int64_t total = twoApps();
  scene::replaceTool("/usr/bin/tmutil", snapshotTool);
  const auto before = scene::tree("/Applications");
  EXPECT_EQ(shown(quarn({"move", "all", "--dry-run"}, {.input = std::nullopt})),
            printed(summary(2, 2, total) + "  " + sizeOf("/Applications/Bar.app") +
                    "\t/Applications/Bar.app -> " + apps + "Bar.app\n  " + sizeOf("/Applications/Foo.app") +
                    "\t/Applications/Foo.app -> " + apps + "Foo.app\ndry-run: no changes made.\n"));
  EXPECT_EQ(scene::tree("/Applications"), before);
  EXPECT_EQ(scene::tree(scene::drive).size(), 1U) << "the drive stays empty";
  EXPECT_FALSE(scene::exists("/tmp/asked"));
}

TEST(MoveAll, aDryRunStillNeedsTheSpace) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  scene::plug("Tiny", "1m");
  scene::makeApp("/Applications/Foo.app", {}, 2'000'000);
  const std::string needed = sizeOf("/Applications/Foo.app");
  const std::string start =
      "target drive: Tiny (/Volumes/Tiny)\nfree:         1 MB\n"
      "apps:         1 eligible\njobs:         1 (" +
      needed + ")\n";
  for (const std::string flag : {"--dry-run", "--yes", "--progress"}) {
    EXPECT_EQ(shown(quarn({"move", "all", "--target-drive", "Tiny", flag})),
              failed("Not enough space: need " + needed + ", have 1 MB", start));
  }
}

TEST(MoveAll, failuresAreListedAndTheStatusStaysZero) {
  const std::int64_t total = twoApps();
  scene::write(apps + "Bar.app/other", "taken");
  const std::int64_t foo = allocated("/Applications/Foo.app");
  const std::string start = summary(2, 2, total);
  EXPECT_EQ(shown(timelessly(quarn({"move", "all", "--yes", "--no-snapshot"}))),
            printed(start + "[1/2] Bar (" + sizeOf("/Applications/Bar.app") +
                    ")\n    FAIL: Destination already exists.\n[2/2] Foo (" + size(foo) + ")\n" +
                    done("Foo") + "---\nmoved:  1 / 2 (" + size(foo) +
                    ")\nfailed: 1\n  /Applications/Bar.app  ::  Destination already exists.\n"));
  EXPECT_EQ(scene::read(apps + "Bar.app/other"), "taken");
}

TEST(MoveAll, withoutASnapshotNoneIsAskedFor) {
  twoApps();
  scene::replaceTool("/usr/bin/tmutil", snapshotTool);
  const std::string out = quarn({"move", "all", "--yes", "--no-snapshot"}).out;
  EXPECT_EQ(out.find("snapshot"), std::string::npos) << out;
  EXPECT_FALSE(scene::exists("/tmp/asked"));
}

TEST(MoveAll, aSnapshotThatIsNotHadIsToldAndTheMoveGoesOn) {
  const std::pair<std::string, std::string> rows[] = {
      {"#!/bin/sh\necho ' \n no luck \n' >&2\nexit 1\n", "snapshot: skipped (no luck)\n"},
      {"#!/bin/sh\nexit 1\n", "snapshot: skipped (unsupported)\n"},
      {"#!/bin/sh\necho odd\n", "snapshot: skipped (unsupported)\n"},
      {"#!/bin/sh\necho 'date: 2026-01-31-090500'\nexit 3\n", "snapshot: skipped (unsupported)\n"},
      {"", "snapshot: skipped (tmutil not present)\n"},
  };
  for (const auto& [script, text] : rows) {
    scene::makeApp("/Applications/Foo.app");
    if (script.empty()) {
      scene::removeTool("/usr/bin/tmutil");
    } else {
      scene::replaceTool("/usr/bin/tmutil", script);
    }
    const auto run = quarn({"move", "all", "--yes"});
    EXPECT_EQ(run.status, 0);
    EXPECT_NE(run.out.find(")\n" + text + "[1/1] Foo ("), std::string::npos) << run.out;
    EXPECT_TRUE(scene::isLink("/Applications/Foo.app"));
    std::filesystem::remove("/Applications/Foo.app");
    std::filesystem::remove_all(apps);
  }
}

TEST(MoveAll, withYesStandardInputIsNeverRead) {
  scene::makeApp("/Applications/Foo.app");
  EXPECT_EQ(quarn({"move", "all", "--yes", "--no-snapshot"}, {.input = std::nullopt}).status, 0);
  EXPECT_TRUE(scene::isLink("/Applications/Foo.app"));
  scene::makeApp("/Applications/Bar.app", {.identifier = "com.example.bar"});
  EXPECT_EQ(scene::shell("printf 'kept\\n' | { quarn move all --yes --no-snapshot >/dev/null; cat; }").out,
            "kept\n");
  EXPECT_TRUE(scene::isLink("/Applications/Bar.app"));
}

TEST(MoveAll, ofTwoBundlesWithOneNameTheFirstIsQueued) {
  scene::makeApp("/Applications/Foo.app");
  scene::makeApp(scene::home + "/Applications/Foo.app");
  const auto before = scene::tree(scene::home + "/Applications/Foo.app");
  EXPECT_EQ(quarn({"move", "all", "--yes", "--no-snapshot"}).status, 0);
  EXPECT_TRUE(scene::isLink("/Applications/Foo.app"));
  EXPECT_EQ(scene::tree(scene::home + "/Applications/Foo.app"), before);
}

TEST(MoveAll, theSpaceIsLookedAtAgainBeforeEachJob) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  scene::plug("Tiny", "1m");
  twoApps();
  // Something else fills the drive while the first application is copied.
  scene::replaceTool("/usr/bin/ditto",
                     "#!/bin/sh\n/usr/libexec/quarn-room/ditto \"$@\"\n"
                     "dd if=/dev/zero of=/Volumes/Tiny/other bs=4096 2>/dev/null\n"
                     "truncate -s -8192 /Volumes/Tiny/other\n");
  const auto before = scene::tree("/Applications/Foo.app");
  const std::string out = quarn({"move", "all", "--yes", "--no-snapshot", "--target-drive", "Tiny"}).out;
  EXPECT_NE(
      out.find("[2/2] Foo (" + sizeOf("/Applications/Foo.app") + ")\n    FAIL: Not enough space. Need " +
               sizeOf("/Applications/Foo.app") + ", have 8 KB.\n---\nmoved:  1 / 2 ("),
      std::string::npos)
      << out;
  EXPECT_EQ(scene::tree("/Applications/Foo.app"), before);
}

}  // namespace
