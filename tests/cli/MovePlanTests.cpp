#include <gtest/gtest.h>

#include "tests/cli/Expected.h"

using namespace expected;
using scene::quarn;

namespace {

const std::string header = "size\tsource\t->\tdestination\n";
const std::string support = scene::home + "/Library/Application Support/";

std::string summary(std::size_t apps, std::size_t jobs, std::int64_t total) {
  return "# target: X9  free=" + size(freeBytes(scene::drive)) +
         "\n# apps eligible: " + std::to_string(apps) + "   jobs: " + std::to_string(jobs) +
         "   total: " + size(total) + "\n";
}

std::string line(const std::string& source, const std::string& destination) {
  return sizeOf(source) + "\t" + source + "\t->\t/Volumes/X9/ExternalQuarn/" + destination + "\n";
}

TEST(MovePlan, aBundleComesBeforeItsDataEachWithItsPlaceOnTheDrive) {
  scene::makeApp("/Applications/Foo.app");
  scene::writeBytes(support + "Foo/a.db", 30'000);
  scene::writeBytes("/Library/Caches/com.example.foo/b", 50'000);
  scene::writeBytes(scene::home + "/.foo/c", 10'000);
  const std::int64_t total = allocated("/Applications/Foo.app") + allocated(support + "Foo") +
                             allocated("/Library/Caches/com.example.foo") + allocated(scene::home + "/.foo");
  EXPECT_EQ(shown(quarn({"move", "plan"})),
            printed(summary(1, 4, total) + header + line("/Applications/Foo.app", "Apps/Foo.app") +
                    line(support + "Foo", "Data/Library/Application Support/Foo") +
                    line("/Library/Caches/com.example.foo", "Data/System/Library/Caches/com.example.foo") +
                    line(scene::home + "/.foo", "Data/.foo")));
}

TEST(MovePlan, withoutDataOnlyBundlesArePlanned) {
  scene::makeApp("/Applications/Foo.app");
  scene::writeBytes(support + "Foo/a.db", 30'000);
  EXPECT_EQ(shown(quarn({"move", "plan", "--no-data"})),
            printed(summary(1, 1, allocated("/Applications/Foo.app")) + header +
                    line("/Applications/Foo.app", "Apps/Foo.app")));
}

TEST(MovePlan, aQueueLargerThanTheFreeSpaceIsWarnedOf) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  scene::plug("Tiny", "1m");
  scene::makeApp("/Applications/Foo.app", {}, 2'000'000);
  const std::string needed = sizeOf("/Applications/Foo.app");
  EXPECT_EQ(
      shown(quarn({"move", "plan", "--target-drive", "Tiny"})),
      printed("# target: Tiny  free=1 MB\n# apps eligible: 1   jobs: 1   total: " + needed + "\n" + header +
              needed + "\t/Applications/Foo.app\t->\t/Volumes/Tiny/ExternalQuarn/Apps/Foo.app\n" +
              "# WARNING: queue is " + needed + " but drive has 1 MB free\n"));
}

TEST(MovePlan, preferencesAndLinkedDataAreLeftOut) {
  scene::makeApp("/Applications/Foo.app");
  scene::write(scene::home + "/Library/Preferences/com.example.foo.plist", "x");
  scene::write("/Library/Preferences/com.example.foo.plist", "x");
  scene::makeFolder("/Volumes/X9/elsewhere");
  scene::link(support + "Foo", "/Volumes/X9/elsewhere");
  EXPECT_EQ(shown(quarn({"move", "plan"})), printed(summary(1, 1, allocated("/Applications/Foo.app")) +
                                                    header + line("/Applications/Foo.app", "Apps/Foo.app")));
}

TEST(MovePlan, aLinkedApplicationStaysEligibleWithItsDataAlone) {
  scene::makeApp("/Volumes/X9/Elsewhere/Foo.app", {.identifier = "com.linked"});
  scene::link("/Applications/Foo.app", "/Volumes/X9/Elsewhere/Foo.app");
  scene::writeBytes(support + "Foo/a.db", 30'000);
  EXPECT_EQ(shown(quarn({"move", "plan"})),
            printed(summary(1, 1, allocated(support + "Foo")) + header +
                    line(support + "Foo", "Data/Library/Application Support/Foo")));
}

TEST(MovePlan, nothingIsChanged) {
  scene::makeApp("/Applications/Foo.app");
  scene::writeBytes(support + "Foo/a.db", 30'000);
  const auto apps = scene::tree("/Applications");
  const auto home = scene::tree(scene::home);
  const auto drive = scene::tree(scene::drive);
  quarn({"move", "plan"});
  EXPECT_EQ(scene::tree("/Applications"), apps);
  EXPECT_EQ(scene::tree(scene::home), home);
  EXPECT_EQ(scene::tree(scene::drive), drive);
}

TEST(MovePlan, aLedgerThatNamesEverythingPlansNothingMore) {
  scene::makeApp("/Applications/Foo.app");
  scene::writeBytes(support + "Foo/a.db", 30'000);
  scene::makeInstallsDB();
  scene::sql(
      "INSERT INTO installs (install_id, app_name, bundle_id) VALUES ('i', 'Foo', 'com.example.foo');");
  for (const std::string& row :
       {std::string("/Applications//Foo.app"), std::string("/Applications/./Foo.app/Contents"), scene::home,
        std::string("/Applications"), std::string("/"), scene::drive, scene::home + "/Library"}) {
    scene::sql("INSERT INTO tracked_files (install_id, file_path) VALUES ('i', '" + row + "');");
  }
  const std::int64_t total = allocated("/Applications/Foo.app") + allocated(support + "Foo");
  const std::string both = line("/Applications/Foo.app", "Apps/Foo.app") +
                           line(support + "Foo", "Data/Library/Application Support/Foo");
  EXPECT_EQ(shown(quarn({"move", "plan"})), printed(summary(1, 2, total) + header + both));
  const auto contents = scene::tree("/Applications/Foo.app");
  EXPECT_EQ(quarn({"move", "all", "--yes"}).status, 0);
  EXPECT_EQ(scene::tree("/Volumes/X9/ExternalQuarn/Apps/Foo.app"), contents) << "whole, and nothing torn out";
  EXPECT_FALSE(scene::isLink(scene::home));
}

TEST(MovePlan, aFolderThatTheLedgerNamesWithItsContentsMovesWhole) {
  scene::makeApp("/Applications/Foo.app");
  scene::write("/opt/foo/sub/x", "x");
  scene::write("/opt/foo/y", "y");
  scene::makeInstallsDB();
  scene::sql(
      "INSERT INTO installs (install_id, app_name, bundle_id) VALUES ('i', 'Foo', 'com.example.foo');");
  for (const std::string row : {"/opt/foo", "/opt/foo/sub", "/opt/foo/sub/x", "/opt/foo/y"}) {
    scene::sql("INSERT INTO tracked_files (install_id, file_path) VALUES ('i', '" + row + "');");
  }
  const auto before = scene::tree("/opt/foo");
  const auto run = quarn({"move", "all", "--yes"});
  EXPECT_NE(run.out.find("\nmoved:  2 / 2 ("), std::string::npos) << run.out;
  EXPECT_EQ(scene::tree("/Volumes/X9/ExternalQuarn/Data/foo"), before);
}

}  // namespace
