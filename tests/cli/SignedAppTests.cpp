#include <gtest/gtest.h>

#include "tests/cli/ReportForms.h"

/// Applications with a real seal: what a move keeps, and what breaks.

using reports::expectReport;

namespace {

const std::string app = "/Applications/Foo.app";
const std::string moved = "/Volumes/X9/ExternalQuarn/Apps/Foo.app";
const std::string apps = "/Volumes/X9/ExternalQuarn/Apps";

void moveSigned() {
  scene::makeApp(app);
  ASSERT_EQ(scene::run({"/usr/bin/codesign", "--force", "--sign", "-", "--timestamp=none", app}).status, 0);
  const auto run = scene::quarn({"move", "one", app, "--yes"});
  ASSERT_NE(run.out.find("    ok in "), std::string::npos) << run.out;
}

reports::Finding healthy() {
  return {"healthy", app, moved, expected::allocated(moved), ""};
}

void orders(const std::string& tool, const std::string& text) {
  scene::write("/var/db/quarn-room-tools/" + tool, text);
}

TEST(SignedApp, keepsItsSealWhenItIsMoved) {
  moveSigned();
  expectReport({1, {apps}, {healthy()}});
}

TEST(SignedApp, isReportedWhenAFileOfItChangedAfterwards) {
  moveSigned();
  scene::write(moved + "/Contents/Resources/data.bin", "changed");
  expectReport({1,
                {apps},
                {healthy(),
                 {"signatureBroken", app, moved, 0,
                  "codesign verify failed. " + moved + ": a sealed resource is missing or invalid"}}});
  const auto before = scene::tree("/Volumes/X9");
  const auto run = scene::quarn({"health", "repair", "--yes"});
  EXPECT_EQ(run.status, 0);
  EXPECT_NE(run.out.find("== SIGNATUREBROKEN (1) ==\n"), std::string::npos) << run.out;
  EXPECT_NE(run.out.find("\n\n\nsnapshot: com.apple.TimeMachine."), std::string::npos);
  EXPECT_EQ(run.out.find("• ["), std::string::npos) << "there is no repair for it";
  EXPECT_EQ(scene::tree("/Volumes/X9"), before);
}

TEST(SignedApp, isReportedByItsTicketWhereThereIsNoNetwork) {
  moveSigned();
  scene::write(moved + "/Contents/CodeResources", "ticket");
  expectReport({1, {apps}, {healthy()}});
  orders("xcrun", "offline\n");
  const auto run = scene::quarn({"health", "check"});
  EXPECT_EQ(run.status, 2);
  EXPECT_NE(run.out.find("    codesign verify failed. stapler: Processing: " + moved + "\n"),
            std::string::npos)
      << run.out;
}

TEST(SignedApp, isReportedWithoutDeveloperTools) {
  moveSigned();
  orders("xcrun", "no-stapler\n");
  const auto run = scene::quarn({"health", "check"});
  EXPECT_EQ(run.status, 2);
  EXPECT_NE(
      run.out.find(
          "    codesign verify failed. stapler: xcrun: error: unable to find utility \"stapler\", not a "
          "developer tool or in PATH\n"),
      std::string::npos)
      << run.out;
}

TEST(SignedApp, thatOnlyTheLinkerHasSignedIsReported) {
  scene::makeApp(app);
  scene::write(app + "/Contents/MacOS/Foo", "#!/bin/sh\n# quarn-room: linker-signed\n");
  ASSERT_NE(scene::quarn({"move", "one", app, "--yes"}).out.find("    ok in "), std::string::npos);
  const auto run = scene::quarn({"health", "check"});
  EXPECT_NE(run.out.find("    codesign verify failed. " + moved +
                         ": code has no resources but signature indicates they must be present\n"),
            std::string::npos)
      << run.out;
}

TEST(SignedApp, isHealthyWhereTheToolsFloodOrAreMissing) {
  moveSigned();
  scene::write(moved + "/Contents/Resources/data.bin", "changed");
  orders("codesign", "flood 9\n");
  const auto flooded = scene::quarn({"health", "check", "--format", "tsv"});
  EXPECT_EQ(flooded.status, 2);
  EXPECT_LT(flooded.out.size(), 20'000'000u);
  scene::removeTool("/usr/bin/codesign");
  expectReport({1, {apps}, {healthy()}});
}

TEST(SignedApp, launchersAreSignedAndRegistered) {
  scene::makeApp("/Volumes/X9/ExternalQuarn/Apps/Suite/One.app",
                 {.identifier = "com.example.one", .executable = "One"});
  scene::link("/Applications/Suite", "/Volumes/X9/ExternalQuarn/Apps/Suite");
  EXPECT_EQ(scene::quarn({"health", "repair", "--yes", "--no-snapshot"}).status, 0);
  EXPECT_EQ(
      scene::run({"/usr/bin/codesign", "--verify", "--deep", "--strict", "/Applications/One.app"}).status, 0);
  EXPECT_EQ(scene::read("/var/db/quarn-room-registered"), "/Applications/One.app\n");
  EXPECT_EQ(scene::quarn({"health", "check"}).status, 0);
}

}  // namespace
