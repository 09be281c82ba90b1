#include <gtest/gtest.h>

#include "tests/cli/Expected.h"

using namespace expected;
using scene::quarn;

namespace {

const std::string apps = "/Volumes/X9/ExternalQuarn/Apps";
const std::string noRoots =
    "Scanned 0 symlinked apps across 0 external root(s).\nHealthy: 0   Problems: 0\n\n";

std::string withRoot(int links, int healthy, int problems) {
  return "Scanned " + std::to_string(links) +
         " symlinked apps across 1 external root(s).\nHealthy: " + std::to_string(healthy) +
         "   Problems: " + std::to_string(problems) + "\nExternal roots:\n  • " + apps + "\n\n";
}

/// An application on the drive and the link that a move leaves.
void movedApp(const std::string& name) {
  scene::makeApp(apps + "/" + name);
  scene::link("/Applications/" + name, apps + "/" + name);
}

TEST(HealthCheck, aMachineWithoutAnythingMovedIsHealthy) {
  EXPECT_EQ(shown(quarn({"health", "check"})), printed(noRoots));
  EXPECT_EQ(shown(quarn({"health", "repair"})), printed("Everything healthy. Nothing to repair.\n"));
}

TEST(HealthCheck, aLinkToAWholeBundleIsHealthy) {
  movedApp("Foo.app");
  EXPECT_EQ(shown(quarn({"health", "check"})), printed(withRoot(1, 1, 0)));
  const auto tsv = quarn({"health", "check", "--format", "tsv"});
  EXPECT_EQ(tsv.status, 0);
  EXPECT_TRUE(tsv.out.find("\nhealthy\t/Applications/Foo.app\t" + apps + "/Foo.app\t") != std::string::npos)
      << tsv.out;
}

TEST(HealthCheck, anyProblemEndsWithTwoAfterAllOutput) {
  movedApp("Foo.app");
  scene::link("/Users/me/Library/Containers/com.example", "/Volumes/Gone/Data");
  const auto run = quarn({"health", "check"});
  EXPECT_EQ(run.status, 2) << "also for one that is counted but has no section";
  EXPECT_EQ(run.out, withRoot(1, 1, 1));
  EXPECT_EQ(quarn({"health", "analyze"}).status, 0);
}

TEST(HealthCheck, anUnknownFormatIsTheOneForPeople) {
  EXPECT_EQ(shown(quarn({"health", "check", "--format", "yaml"})), printed(noRoots));
  EXPECT_EQ(shown(quarn({"health", "check", "--format"})), printed(noRoots));
}

TEST(HealthCheck, theUnpluggedDriveLeavesDanglingLinks) {
  scene::link("/Applications/Foo.app", "/Volumes/Away/ExternalQuarn/Apps/Foo.app");
  const auto run = quarn({"health", "check"});
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(run.out,
            "Scanned 1 symlinked apps across 0 external root(s).\nHealthy: 0   Problems: 1\n\n"
            "== DANGLING (1) ==\n"
            "  /Applications/Foo.app\n"
            "    → /Volumes/Away/ExternalQuarn/Apps/Foo.app\n"
            "    Target does not exist. The external drive may be unmounted, or the file was deleted.\n"
            "\n");
}

TEST(HealthCheck, anAppThatAnUpdaterBroughtBackIsFoundOnceThoughTheManifestListsItToo) {
  scene::makeApp("/Applications/Foo.app");
  const auto moved = quarn({"move", "one", "/Applications/Foo.app", "--yes"});
  ASSERT_NE(moved.out.find("ok in"), std::string::npos) << moved.out;
  ASSERT_EQ(scene::shell("rm /Applications/Foo.app").status, 0);
  scene::makeApp("/Applications/Foo.app");
  const auto run = quarn({"health", "check", "--format", "tsv"});
  EXPECT_EQ(run.status, 2);
  const std::string bytes = run.out.substr(run.out.rfind("Foo.app\t") + 8);
  EXPECT_EQ(run.out,
            "kind\tlocation\ttarget\tsize_bytes\tdetail\nreverted\t/Applications/Foo.app\t" + apps +
                "/Foo.app\t" + bytes.substr(0, bytes.find('\t')) +
                "\tAn updater replaced the symlink with a real bundle on internal disk. SSD copy is now "
                "orphaned.\n");
}

TEST(HealthCheck, trackedFilesThatAreGoneSpareTheSignature) {
  movedApp("Foo.app");
  scene::makeInstallsDB();
  const std::string columns = "(install_id, app_name, bundle_id, install_type, confidence, installed_at)";
  scene::sql("INSERT INTO installs " + columns +
             " VALUES ('i', 'Foo', 'com.example.foo', 'app', 'high', 'now')");
  scene::sql("INSERT INTO tracked_files (install_id, file_path) VALUES ('i', '/gone')");
  scene::replaceTool("/usr/bin/codesign", "#!/bin/sh\necho asked >>/tmp/asked\nexit 1\n");
  const auto run = quarn({"health", "check"});
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(run.out, withRoot(1, 1, 1) + "== MISSINGTRACKEDFILES (1) ==\n  /Applications/Foo.app\n    → " +
                         apps + "/Foo.app\n    1/1 tracked files missing for Foo: /gone\n\n");
  EXPECT_FALSE(scene::exists("/tmp/asked"));
}

TEST(HealthCheck, changesNothing) {
  movedApp("Foo.app");
  scene::link("/Applications/Gone.app", "/nowhere");
  scene::makeApp(apps + "/Orphan.app");
  const auto before = scene::tree("/Users");
  const auto applications = scene::tree("/Applications");
  const auto drive = scene::tree("/Volumes/X9");
  for (const char* action : {"check", "analyze"}) quarn({"health", action});
  quarn({"health", "repair", "--dry-run", "--yes"});
  EXPECT_EQ(scene::tree("/Users"), before);
  EXPECT_EQ(scene::tree("/Applications"), applications);
  EXPECT_EQ(scene::tree("/Volumes/X9"), drive);
}

TEST(HealthAnalyze, addsWhatCouldBeReclaimed) {
  movedApp("Foo.app");
  scene::makeApp(apps + "/Orphan.app");
  const auto run = quarn({"health", "analyze"});
  EXPECT_EQ(run.status, 0);
  EXPECT_NE(run.out.find("== ORPHAN (1) ==\n  " + apps + "/Orphan.app  ["), std::string::npos) << run.out;
  EXPECT_NE(run.out.find("\n== ANALYSIS ==\nTotal SSD bytes (healthy + orphan): "), std::string::npos);
  EXPECT_NE(run.out.find("\nReclaimable from orphans: "), std::string::npos);
  const auto toml = quarn({"health", "analyze", "--format", "toml"});
  EXPECT_NE(toml.out.find("\n[totals_by_kind_bytes]\nhealthy = "), std::string::npos) << toml.out;
  const auto tsv = quarn({"health", "analyze", "--format", "tsv"});
  EXPECT_NE(tsv.out.find("\n\nmetric\tbytes\nhealthy\t"), std::string::npos) << tsv.out;
}

}  // namespace
