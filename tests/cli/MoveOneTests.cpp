#include <gtest/gtest.h>

#include "tests/cli/Expected.h"
#include "tests/support/Patterns.h"

using namespace expected;
using scene::quarn;

namespace {

const std::string app = "/Applications/Foo.app";
const std::string moved = "/Volumes/X9/ExternalQuarn/Apps/Foo.app";
const std::string support = scene::home + "/Library/Application Support/Foo";
const std::string movedSupport = "/Volumes/X9/ExternalQuarn/Data/Library/Application Support/Foo";

std::string done(const std::string& destination) {
  return "    verifying\n    linking\n    ok in #.#s -> " + destination + "\n";
}

scene::Run timelessly(scene::Run run) {
  run.out = timeless(run.out);
  return run;
}

TEST(MoveOne, theBundleIsMovedAndALinkLeadsToIt) {
  scene::makeApp(app);
  const auto before = scene::tree(app);
  const std::string bytes = sizeOf(app);
  EXPECT_EQ(shown(timelessly(quarn({"move", "one", app, "--yes"}))),
            printed("Foo  ->  X9   " + bytes + " (1 jobs)\n[1/1] Foo (" + bytes + ")\n" + done(moved)));
  EXPECT_EQ(scene::target(app), moved);
  EXPECT_EQ(scene::tree(moved), before);
  EXPECT_EQ(shown(scene::run({app + "/Contents/MacOS/Foo"})),
            printed("running from " + app + "/Contents/MacOS/Foo\n"));
}

TEST(MoveOne, theDataMovesBehindTheBundleUnderALabelOfItsOwn) {
  scene::makeApp(app, {.displayName = ""});
  scene::writeBytes(support + "/a.db", 30'000);
  const std::string bytes = sizeOf(app);
  const std::string data = sizeOf(support);
  const std::string total = size(allocated(app) + allocated(support));
  EXPECT_EQ(shown(timelessly(quarn({"move", "one", app, "--yes"}))),
            printed("Foo  ->  X9   " + total + " (2 jobs)\n[1/2] Foo (" + bytes + ")\n" + done(moved) +
                    "[2/2] Foo — Foo (" + data + ")\n" + done(movedSupport)));
  EXPECT_EQ(scene::target(support), movedSupport);
}

TEST(MoveOne, withoutDataTheDataStays) {
  scene::makeApp(app);
  scene::writeBytes(support + "/a.db", 30'000);
  const auto before = scene::tree(support);
  const std::string bytes = sizeOf(app);
  EXPECT_EQ(shown(timelessly(quarn({"move", "one", app, "--yes", "--no-data"}))),
            printed("Foo  ->  X9   " + bytes + " (1 jobs)\n[1/1] Foo (" + bytes + ")\n" + done(moved)));
  EXPECT_EQ(scene::tree(support), before);
}

TEST(MoveOne, theIdentifierNamesItToo) {
  scene::makeApp(app);
  EXPECT_EQ(quarn({"move", "one", "com.example.foo", "--yes"}).status, 0);
  EXPECT_EQ(scene::target(app), moved);
}

TEST(MoveOne, aSecondTimeThereIsNothingToMove) {
  scene::makeApp(app);
  quarn({"move", "one", app, "--yes"});
  EXPECT_EQ(shown(quarn({"move", "one", app, "--yes"})),
            printed("Foo  ->  X9   Zero KB (0 jobs)\nnothing to move.\n"));
}

TEST(MoveOne, theSelectorCountsExactly) {
  scene::makeApp(scene::home + "/Applications/Foo.app");
  for (const std::string selector :
       {"~/Applications/Foo.app", "/Users/me/Applications/foo.app", "Foo.app", "Foo", "com.example.Foo",
        "com.example", "/Users/me/Applications/Foo.app/", "/Users/me/Applications/./Foo.app", ""}) {
    EXPECT_EQ(shown(quarn({"move", "one", selector, "--yes"})), failed("App not found: " + selector));
  }
  EXPECT_FALSE(scene::isLink(scene::home + "/Applications/Foo.app"));
}

TEST(MoveOne, aDriveInFrontOfTheSelectorIsTakenForIt) {
  scene::makeApp(app);
  EXPECT_EQ(shown(quarn({"move", "one", "--target-drive", "/Volumes/X9", app, "--yes"})),
            failed("App not found: /Volumes/X9"));
  EXPECT_EQ(quarn({"move", "one", app, "--target-drive", "/Volumes/X9", "--yes"}).status, 0);
  EXPECT_TRUE(scene::isLink(app));
}

TEST(MoveOne, withoutASelectorTheUsageIsTold) {
  for (const std::vector<std::string>& words :
       {std::vector<std::string>{}, {"--yes"}, {"--yes", "--no-data"}, {"--target-drive"}}) {
    std::vector<std::string> command = {"move", "one"};
    command.insert(command.end(), words.begin(), words.end());
    EXPECT_EQ(shown(quarn(command)),
              failed("Usage: move one <bundle-path|bundle-id> [--target-drive <path>] [--no-data] [--yes] "
                     "[--progress]"));
  }
}

TEST(MoveOne, aProtectedOrRiskyApplicationMovesWhenNamed) {
  const std::string xcode = "/Applications/Xcode.app";
  scene::makeApp(xcode, {.identifier = "com.apple.dt.Xcode"});
  scene::write(xcode + "/Contents/_MASReceipt/receipt", "receipt");
  EXPECT_EQ(quarn({"move", "one", xcode, "--yes"}).status, 0);
  EXPECT_EQ(scene::target(xcode), "/Volumes/X9/ExternalQuarn/Apps/Xcode.app");
}

TEST(MoveOne, tooLittleSpaceIsRefusedBeforeTheQuestion) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  scene::plug("Tiny", "1m");
  scene::makeApp(app, {}, 2'000'000);
  const auto before = scene::tree(app);
  const std::string needed = sizeOf(app);
  EXPECT_EQ(shown(quarn({"move", "one", app, "--target-drive", "Tiny"})),
            failed("Not enough space: need " + needed + ", have 1 MB",
                   "Foo  ->  Tiny   " + needed + " (1 jobs)\n"));
  EXPECT_EQ(scene::tree(app), before);
  EXPECT_FALSE(scene::exists("/Volumes/Tiny/ExternalQuarn"));
}

TEST(MoveOne, aFailedBundleDoesNotStopItsData) {
  scene::makeApp(app);
  scene::makeFolder(moved);
  scene::writeBytes(support + "/a.db", 30'000);
  const auto before = scene::tree(app);
  const std::string bytes = sizeOf(app);
  const std::string data = sizeOf(support);
  const std::string total = size(allocated(app) + allocated(support));
  EXPECT_EQ(shown(timelessly(quarn({"move", "one", app, "--yes"}))),
            printed("Foo  ->  X9   " + total + " (2 jobs)\n[1/2] Foo (" + bytes +
                    ")\n    FAIL: Destination already exists.\n[2/2] Foo — Foo (" + data + ")\n" +
                    done(movedSupport) + "failed: 1\n"));
  EXPECT_EQ(scene::tree(app), before);
  EXPECT_EQ(scene::target(support), movedSupport);
}

TEST(MoveOne, aFastCopyShowsItsProgressOnceOnStandardError) {
  scene::makeApp(app);
  const std::string bytes = sizeOf(app);
  const auto run = quarn({"move", "one", app, "--yes", "--progress"});
  EXPECT_EQ(shown(timelessly(run)),
            shown({0, "Foo  ->  X9   " + bytes + " (1 jobs)\n[1/1] Foo (" + bytes + ")\n" + done(moved),
                   "    " + bytes + " / " + bytes + "  100%   \r\n"}));
}

TEST(MoveOne, aSlowCopyShowsWhatHasArrivedTwiceASecond) {
  scene::makeApp(app, {}, 400'000);
  scene::replaceTool("/usr/bin/ditto",
                     "#!/bin/sh\n"
                     "mkdir -p \"$3/Contents/Resources\"\n"
                     "head -c 200000 \"$2/Contents/Resources/data.bin\" >\"$3/Contents/Resources/data.bin\"\n"
                     "sleep 0.8\n"
                     "exec /usr/libexec/quarn-room/ditto \"$@\"\n");
  const std::string half = scene::hasMounts() ? "201 KB" : "20[0-9] KB";
  const std::string bytes = sizeOf(app);
  const auto run = quarn({"move", "one", app, "--yes", "--progress"});
  EXPECT_EQ(run.status, 0);
  EXPECT_TRUE(patterns::match(run.err, "(    " + half + " / " + bytes + "  4[0-9]%   \r)+    " + bytes +
                                           " / " + bytes + "  100%   \r\n"))
      << run.err;
}

TEST(MoveOne, nothingButHiddenFilesHasNoProgressToShow) {
  scene::makeApp(app);
  quarn({"move", "one", app, "--yes"});
  scene::write(support + "/.hidden", "not counted");
  const auto run = quarn({"move", "one", app, "--yes", "--progress"});
  EXPECT_EQ(
      shown(timelessly(run)),
      shown({0, "Foo  ->  X9   Zero KB (1 jobs)\n[1/1] Foo — Foo (Zero KB)\n" + done(movedSupport), "\n"}));
  EXPECT_EQ(scene::read(movedSupport + "/.hidden"), "not counted");
}

TEST(MoveOne, aFailureEndsTheProgressLineToo) {
  scene::makeApp(app);
  scene::makeFolder(moved);
  const std::string bytes = sizeOf(app);
  EXPECT_EQ(shown(quarn({"move", "one", app, "--yes", "--progress"})),
            shown({0,
                   "Foo  ->  X9   " + bytes + " (1 jobs)\n[1/1] Foo (" + bytes +
                       ")\n    FAIL: Destination already exists.\nfailed: 1\n",
                   "\n"}));
}

TEST(MoveOne, nothingIsSnapshottedFirst) {
  scene::makeApp(app);
  quarn({"move", "one", app, "--yes"});
  EXPECT_TRUE(scene::isLink(app));
  EXPECT_EQ(quarn({"snapshot", "list"}).out, "No local snapshots.\n");
}

TEST(MoveOne, theMoveIsRecordedInTheManifest) {
  scene::makeApp(app);
  const std::int64_t bytes = allocated(app);
  quarn({"move", "one", app, "--yes"});
  const std::string text = patterns::replace(
      scene::read(scene::manifest), "[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}Z", "WHEN");
  EXPECT_EQ(text,
            "[\n  {\n    \"bundleIdentifier\" : \"com.example.foo\",\n"
            "    \"destinationPath\" : \"\\/Volumes\\/X9\\/ExternalQuarn\\/Apps\\/Foo.app\",\n"
            "    \"movedAt\" : \"WHEN\",\n    \"sizeBytes\" : " +
                std::to_string(bytes) + ",\n    \"sourcePath\" : \"\\/Applications\\/Foo.app\"\n  }\n]");
}

TEST(MoveOne, theMoveAndTheWayBackAreRecordedInTheLedger) {
  scene::makeInstallsDB();
  scene::makeApp(app);
  const std::string bytes = std::to_string(allocated(app));
  quarn({"move", "one", app, "--yes"});
  EXPECT_EQ(
      scene::sql("SELECT app_name, bundle_id, version, source_file, source_hash, install_type, "
                 "confidence, uninstall_strategy, uninstalled_at, notes FROM installs"),
      std::vector<std::string>{"Foo.app|com.example.foo|1.2.3|" + moved +
                               "|NULL|app_move|high|restore_via_quarn|NULL|moved by Quarn; symlink at " +
                               app + " -> " + moved + "; " + bytes + " bytes"});
  quarn({"move", "back", "Foo"});
  EXPECT_EQ(scene::sql("SELECT uninstalled_at IS NULL FROM installs"), std::vector<std::string>{"0"});
  EXPECT_EQ(scene::read(scene::manifest), "[\n\n]");
}

}  // namespace
