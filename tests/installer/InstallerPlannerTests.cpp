#include <gtest/gtest.h>

#include "QuarnCore/installer/InstallerPlanner.h"
#include "tests/support/FakeTools.h"
#include "tests/support/Packages.h"
#include "tests/support/Scene.h"

namespace quarn {
namespace {

using Texts = std::vector<std::string>;

const Path drive("/Volumes/None");

InstallerOption option(bool allowsUntrusted = false) {
  return {.id = "own",
          .label = "Own",
          .strategy = "x",
          .sourceKinds = {},
          .allowUntrustedPackages = allowsUntrusted,
          .externalRootName = "ExternalQuarn",
          .applicationLinkRoot = "/Applications",
          .relocateSafeApps = false};
}

/// The tools of a Mac without a warning, and with a package that nobody signed.
class Planning : public testing::Test {
 protected:
  Planning() {
    tools.answers["/usr/bin/mdutil"] = {.output = "/:\n\tIndexing enabled. \n"};
    tools.answers["/usr/sbin/pkgutil --check-signature"] = {.status = 1,
                                                            .output = "   Status: no signature\n"};
    tools.answers["/usr/bin/xar -tf"] = {.output = "Payload\n"};
  }
  InstallerPlan plan(const std::string& source, const InstallerOption& chosen = option()) {
    TemporaryFolders temporaryFolders(tools.platform());
    return InstallerPlanner::plan(tools.platform(), temporaryFolders,
                                  InstallerSource::of(tools.platform().places, source), chosen, drive);
  }

  doubles::FakeTools tools;
};

TEST_F(Planning, anApplicationIsCopiedAndGetsALauncher) {
  scene::makeApp("/Users/me/My Foo.app");
  const InstallerPlan planned = plan("/Users/me/My Foo.app");
  EXPECT_EQ(planned.sourcePath, "/Users/me/My Foo.app");
  EXPECT_EQ(planned.optionID, "own");
  EXPECT_EQ(planned.targetDrivePath, "/Volumes/None") << "nobody looks whether it is there";
  EXPECT_EQ(planned.actions,
            (Texts{"copy-app\t/Users/me/My Foo.app\t/Volumes/None/ExternalQuarn/Apps/My Foo.app",
                   "launcher-app\t/Applications/My Foo.app\t/Volumes/None/ExternalQuarn/Apps/My Foo.app"}));
  EXPECT_EQ(planned.warnings, Texts{});
  EXPECT_GE(planned.neededBytes, 40'000);
}

TEST_F(Planning, anUntrustedPackageIsBlockedAndStillPlanned) {
  const Texts actions = {"snapshot-before", "install-pkg\t/Users/me/a.pkg\t/", "snapshot-after",
                         "receipt-diff", "externalize-safe-new-apps"};
  tools.answers["/usr/bin/mdutil"] = {.output = "/:\n\tIndexing disabled.\n"};
  const InstallerPlan planned = plan("/Users/me/a.pkg");
  ASSERT_EQ(planned.warnings.size(), 3u);
  EXPECT_EQ(planned.warnings[0], "Package signature is not trusted.");
  EXPECT_EQ(planned.warnings[1], "Untrusted packages are blocked.");
  EXPECT_EQ(planned.actions, actions) << "also where the option leaves new applications where they are";
  EXPECT_EQ(plan("/Users/me/a.pkg", option(true)).warnings[0], "Package signature is not trusted.");
  EXPECT_EQ(plan("/Users/me/a.pkg", option(true)).warnings.size(), 2u);
}

TEST_F(Planning, aTrustedPackageIsNotBlocked) {
  tools.answers["/usr/sbin/pkgutil --check-signature"] = {.output = "   Status: signed Apple Software\n"};
  EXPECT_EQ(plan("/Users/me/a.mpkg").warnings, Texts{});
  EXPECT_EQ(plan("/Users/me/a.mpkg").actions[1], "install-pkg\t/Users/me/a.mpkg\t/");
}

TEST_F(Planning, aScriptIsOnlyLookedInto) {
  scene::write("/Users/me/a.sh", "#!/bin/sh\n");
  const InstallerPlan planned = plan("/Users/me/a.sh");
  EXPECT_EQ(planned.actions, Texts{"inspect-contained\t/Users/me/a.sh"});
  EXPECT_EQ(planned.warnings, Texts{"Shell script — runs arbitrary code with sudo."});
}

TEST_F(Planning, anUnknownSourceHasNoActions) {
  tools.answers["/usr/bin/mdutil"] = {.output = "/:\n\tIndexing disabled.\n"};
  const InstallerPlan planned = plan("/Users/me/a.txt");
  EXPECT_EQ(planned.actions, Texts{});
  EXPECT_EQ(planned.neededBytes, 0);
  ASSERT_EQ(planned.warnings.size(), 2u);
  EXPECT_EQ(planned.warnings[0], "Unsupported source type.");
}

TEST(PlanningOfContainers, eachItemHasItsOwnActions) {
  if (!packages::canBeMade()) GTEST_SKIP() << "there is no bsdtar";
  scene::makeApp("/Users/me/content/B.app");
  scene::write("/Users/me/content/A.pkg", "x");
  const auto made = scene::run(
      {"/usr/bin/bsdtar", "--format", "iso9660", "-cf", "/Users/me/I.dmg", "-C", "/Users/me/content", "."});
  ASSERT_EQ(made.status, 0) << made.err;
  TemporaryFolders temporaryFolders(hostPlatform());
  const auto planned =
      InstallerPlanner::plan(hostPlatform(), temporaryFolders,
                             InstallerSource::of(hostPlatform().places, "/Users/me/I.dmg"), option(), drive);
  ASSERT_EQ(planned.actions.size(), 7u);
  EXPECT_TRUE(planned.actions[1].starts_with("install-pkg\t/Volumes/")) << planned.actions[1];
  EXPECT_TRUE(planned.actions[5].starts_with("copy-app\t/Volumes/")) << planned.actions[5];
  EXPECT_TRUE(planned.actions[6].starts_with("launcher-app\t/Applications/B.app\t")) << planned.actions[6];
  EXPECT_EQ(planned.warnings, Texts{}) << "what is in an image is judged when it is installed";
}

TEST(PlanningOfContainers, anImageOfDocumentsPlansNothing) {
  if (!packages::canBeMade()) GTEST_SKIP() << "there is no bsdtar";
  scene::write("/Users/me/content/Read me.txt", "x");
  scene::run(
      {"/usr/bin/bsdtar", "--format", "iso9660", "-cf", "/Users/me/I.dmg", "-C", "/Users/me/content", "."});
  TemporaryFolders temporaryFolders(hostPlatform());
  const auto planned =
      InstallerPlanner::plan(hostPlatform(), temporaryFolders,
                             InstallerSource::of(hostPlatform().places, "/Users/me/I.dmg"), option(), drive);
  EXPECT_EQ(planned.warnings, Texts{"No .app or .pkg found."});
  EXPECT_EQ(planned.actions, Texts{});
  EXPECT_EQ(planned.neededBytes, 0);
}

}  // namespace
}  // namespace quarn
